#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/model/file_record.h"
#include "video/video_image.h"
#include "video/video_source.h"

/// Reads frames on a thread of its own and makes pictures of them, so that a window never waits for a disk or
/// a decoder.
///
/// There is one pending request: a newer one takes the place of one that hasn't begun. What is being read is
/// finished and delivered; a receiver that has asked for something else meanwhile compares file and frame and
/// lets it go.
///
/// Threads  constructor, `Request` and destructor on any one thread, typically the window's. Sources are
///          opened, read, closed and destroyed on the reader's thread only. Both receivers are called there
///          as well, one at a time and never after the destructor has returned; they are short, leave the
///          reader alone and don't throw. A window's receiver copies what it needs and posts it to the
///          window's own thread.
/// End      the destructor waits for a receiver at most. What the thread is stuck in may take longer: it goes
///          on by itself as a loose thread, closes the sources and ends.
/// Errors   come as text with the result; memory that runs out is one of them.
class FrameReader {
public:
    using Sources = std::map<int, std::unique_ptr<rkIVideoSource>>;

    struct Result {
        int file = 0;  ///< as asked for
        int frame = 0;
        std::wstring error;  ///< why there is no picture; empty if there is one
        /// The frame as `RGB24` with its rows bottom-up, of the video's visible size. Valid during the call
        /// only; null with an error.
        const rkVideoImage* picture = nullptr;
    };
    using Receiver = std::function<void(const Result& result)>;

    /// A file that is open.
    struct OpenedFile {
        int file = 0;
        int width = 0;
        int height = 0;
    };
    /// The files that are open, by ascending index.
    using OpenedReceiver = std::function<void(const std::vector<OpenedFile>& files)>;

    /// Reads from sources that are open; they belong to the reader, and nothing else may touch them.
    /// `yuvTable` is the colour matrix of `MakeDisplayPicture`.
    FrameReader(Sources sources, int yuvTable, Receiver receiver);

    /// Opens the files first, one after another, prefers planar YUV, and tells which of them are open, before
    /// any frame is read.
    FrameReader(std::map<int, FileRecord> files, int yuvTable, Receiver receiver, OpenedReceiver opened);

    /// Drops a pending request. Doesn't wait for the thread.
    ~FrameReader();
    FrameReader(const FrameReader&) = delete;
    FrameReader& operator=(const FrameReader&) = delete;

    /// Asks for a frame of a file. A file that isn't among the sources gives an error. Doesn't wait.
    void Request(int file, int frame);

private:
    class Work;
    std::shared_ptr<Work> work;  // the thread has a share in it
};
