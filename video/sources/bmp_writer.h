#pragma once

#include <cstdint>
#include <string>

#include "video/video_writer.h"

/// Stores `RGB24` frames as a bitmap of 24 bits a pixel. Every frame rewrites the file: the last one stays.
///
/// `Open` touches no file. A frame that can't be written whole leaves in the file what was written of it. A
/// pipe is no file that a frame can go to, and doesn't keep the writer waiting.
class rkBmpWriter : public rkIVideoWriter {
public:
    enum Error { NoError = 0, BadDimensions = 1, OpenFailed = 2, WriteFailed = 3, NoMemory = 4 };

    /// Sides of a frame below 2 GiB. An empty name gives `OpenFailed`.
    int Open(const std::wstring& name, int pictureWidth, int pictureHeight);

    /// An `RGB24` image of the writer's sides, else `BadDimensions`. Rows are stored as they come, so
    /// bottom-up rows show upright.
    int WriteFrameImage(rkVideoImage& image) override;
    /// Rows of (3 * width + 3) rounded down to a multiple of 4 bytes.
    int WriteFrame(std::uint8_t* buffer) override;

    void GetDescription(wchar_t* buffer, int size) override;
    void GetErrorText(int code, wchar_t* buffer, int size) override;
    int GetPosition() override { return 0; }
    int Close() override;

private:
    std::wstring fileName;
    int width = 0;
    int height = 0;
};

/// The file that `rkBmpWriter` would make of an `RGB24` image, which has pixels.
std::string rkBmpFileBytes(rkVideoImage& image);
