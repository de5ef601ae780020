#pragma once

#include <memory>
#include <string>

#include "video/avi/compressor_settings.h"
#include "video/video_writer.h"

/// The one video or picture file that an output writes: opened by its name's ending, with the frames counted
/// and the last error kept.
class rkVideoFile {
public:
    enum Error { NoError = 0, AlreadyOpen = 2, BadSize = 4, NotOpen = 6, WriterFailed = 8 };

    /// A name that ends in `bmp` gives a bitmap, which the last frame stays in; any other an uncompressed AVI
    /// file of 29.97 frames a second.
    bool OpenWriter(const std::wstring& fileName, int width, int height);
    /// An AVI file of `rate / scale` frames a second.
    bool OpenWriterWithSettings(const std::wstring& fileName, int width, int height, int scale, int rate,
                                const rkCompressorSettings& settings);
    /// An `RGB24` image of the file's size, bottom-up.
    bool WriteImage(rkVideoImage& image);
    /// Completes the file. False if that failed; true when nothing was open.
    bool CloseWriter();

    /// The name of the video stream in the AVI files opened from now on; empty stands for the library's own.
    void SetStreamTitle(const std::wstring& title) { streamTitle = title; }

    int FramesWritten() const { return framesWritten; }  ///< since the writer was opened
    int LastError() const { return lastError; }          ///< of the last failure
    int WriterResult() const { return writerResult; }    ///< the writer's own code of it

private:
    bool Fail(Error error);
    template <class Writer, class Open>
    bool OpenWith(const Open& open);

    std::unique_ptr<rkIVideoWriter> writer;
    std::wstring streamTitle;
    int framesWritten = 0;
    int lastError = NoError;
    int writerResult = 0;
};
