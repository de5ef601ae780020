#pragma once

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "engine/model/file_record.h"
#include "video/video_image.h"
#include "video/video_source.h"

/// Reads frames on a thread of its own and makes pictures of them, so that a window never waits for a disk or a decoder.
///
/// There is one pending request: a newer one takes the place of one that hasn't begun. What is being read is finished and
/// delivered; a receiver that has asked for something else meanwhile compares file and frame and lets it go.
///
/// Threads  constructor, `Request` and destructor on any one thread, typically the window's. Sources are opened, read and
///          closed on the reader's thread only. Both receivers are called there as well, one at a time and never after the
///          destructor has returned; they may call `Request`, must not destroy the reader and don't throw. A window's
///          receiver copies what it needs and posts it to the window's own thread.
/// Errors   come as text with the result; memory that runs out is one of them.
class FrameReader {
public:
    using Sources = std::map<int, std::unique_ptr<rkIVideoSource>>;

    struct Result {
        int file = 0;  ///< as asked for
        int frame = 0;
        std::wstring error;  ///< why there is no picture; empty if there is one
        /// The frame as `RGB24` with its rows bottom-up, of the video's visible size. Valid during the call only; null
        /// with an error.
        const rkVideoImage* picture = nullptr;
    };
    using Receiver = std::function<void(const Result& result)>;

    /// A file that is open.
    struct OpenedFile {
        int file = 0;
        int width = 0;
        int height = 0;
        int frameCount = 0;
    };
    /// The files that are open, by ascending index.
    using OpenedReceiver = std::function<void(const std::vector<OpenedFile>& files)>;

    /// Reads from sources that are open; they belong to the reader, and nothing else may touch them. `yuvTable` is the
    /// colour matrix of `MakeDisplayPicture`.
    FrameReader(Sources sources, int yuvTable, Receiver receiver);

    /// Opens the files first, one after another, prefers planar YUV, and tells which of them are open, before any frame
    /// is read.
    FrameReader(std::map<int, FileRecord> files, int yuvTable, Receiver receiver, OpenedReceiver opened);

    /// Drops a pending request, waits for the read or the opening of a file that is under way, closes the sources.
    ~FrameReader();
    FrameReader(const FrameReader&) = delete;
    FrameReader& operator=(const FrameReader&) = delete;

    /// Asks for a frame of a file. A file that isn't among the sources gives an error. Doesn't wait.
    void Request(int file, int frame);

private:
    struct Asked {
        int file = 0;
        int frame = 0;
    };

    void Run();
    bool OpenFiles();
    void Deliver(const Asked& asked);
    std::wstring MakePicture(const Asked& asked);

    std::map<int, FileRecord> toOpen;  // the reader's thread's, as all below up to the mutex
    Sources sources;
    const int yuvTable;
    const Receiver receiver;
    const OpenedReceiver opened;
    rkVideoImage image;    // as read
    rkVideoImage scratch;  // of the conversion
    rkVideoImage picture;  // as delivered

    std::mutex mutex;  // of the two below
    std::optional<Asked> pending;
    bool isEnding = false;
    std::condition_variable changed;

    std::thread thread;  // the last member: it uses all others
};
