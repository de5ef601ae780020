#pragma once

#include "video/color_space.h"
#include "video/video_image.h"
#include "video/video_source.h"

#include <atomic>
#include <memory>

/// A video made of numbers: blue is four times the column, green the row from the top, red the frame.
class TestVideo : public rkIVideoSource {
public:
    /// What a test wants to know of a video that it gave away.
    struct Record {
        std::atomic<int> reads = 0;
        std::atomic<int> badFrame = -1;    ///< can't be read
        std::atomic<bool> isHeld = false;  ///< a read waits until this is false again
        std::atomic<bool> isClosed = false;
        std::atomic<bool> isDestroyed = false;
    };

    TestVideo(int width, int height, int frameCount,
              std::shared_ptr<Record> record = std::make_shared<Record>())
        : width(width), height(height), frameCount(frameCount), record(std::move(record)) {}
    ~TestVideo() override { record->isDestroyed = true; }

    int ReadFrameImage(rkVideoImage& image, int frame) override;
    int ReadFrame(std::uint8_t*, int) override { return 1; }
    int ReadNextFrame(std::uint8_t*) override { return 1; }
    int ReadNextFrameImage(rkVideoImage&) override { return 1; }
    int Close() override {
        record->isClosed = true;
        return 0;
    }
    void GetFullDescription(wchar_t*, int) override {}
    void GetDescription(wchar_t*, int) override {}
    void GetErrorText(int code, wchar_t* buffer, int size) override;
    bool IsBadFrameNumber(int frame) override { return frame < 0 || frame >= frameCount; }
    bool IsEndOfVideo() override { return false; }
    int GetWidth() override { return width; }
    int GetHeight() override { return height; }
    int GetColorSpace() override { return RGB24; }
    int GetFrameCount() override { return frameCount; }

private:
    int width, height, frameCount;
    std::shared_ptr<Record> record;
};
