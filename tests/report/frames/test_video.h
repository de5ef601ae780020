#pragma once

#include "platform/text.h"
#include "video/color_space.h"
#include "video/video_image.h"
#include "video/video_source.h"

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

/// What a test and its videos tell each other, under a lock.
struct Stage {
    void Wait(const std::function<bool()>& isReached) {
        std::unique_lock lock(mutex);
        if (!changed.wait_for(lock, std::chrono::seconds(20), isReached)) std::abort();
    }
    void Tell(const std::function<void()>& change) {
        {
            const std::lock_guard lock(mutex);
            change();
        }
        changed.notify_all();
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<int> read;  // frames, as the videos were asked for them
    int gate = 1 << 30;     // frames from here on are read only when this is raised
    int badFrame = -1;      // can't be read
    int closed = 0, gone = 0;
    std::thread::id thread;
};

/// A video made of numbers: blue is four times the column, green the row from the top, red the frame.
struct TestVideo : rkIVideoSource {
    TestVideo(int width, int height, int frameCount, std::shared_ptr<Stage> stage = std::make_shared<Stage>())
        : width(width), height(height), frameCount(frameCount), stage(std::move(stage)) {}
    ~TestVideo() override {
        stage->Tell([this] { ++stage->gone; });
    }

    int ReadFrameImage(rkVideoImage& image, int frame) override {
        std::unique_lock lock(stage->mutex);
        stage->read.push_back(frame);
        stage->thread = std::this_thread::get_id();
        stage->changed.notify_all();
        stage->changed.wait(lock, [&] { return frame < stage->gate; });
        if (IsBadFrameNumber(frame) || frame == stage->badFrame) return 7;
        image.Create(width, height, RGB24, 0);
        for (int y = 0; y < height; ++y) {
            std::uint8_t* byte = image.Row(0, height - 1 - y);
            for (int x = 0; x < width; ++x)
                for (const int value : {4 * x, y, frame}) *byte++ = static_cast<std::uint8_t>(value);
        }
        return 0;
    }
    int Close() override {
        stage->Tell([this] { ++stage->closed; });
        return 0;
    }
    void GetErrorText(int code, wchar_t* buffer, int size) override {
        CopyText(L"Error " + std::to_wstring(code), buffer, size);
    }

    int ReadFrame(std::uint8_t*, int) override { return 1; }
    int ReadNextFrame(std::uint8_t*) override { return 1; }
    int ReadNextFrameImage(rkVideoImage&) override { return 1; }
    void GetFullDescription(wchar_t*, int) override {}
    void GetDescription(wchar_t*, int) override {}
    bool IsBadFrameNumber(int frame) override { return frame < 0 || frame >= frameCount; }
    bool IsEndOfVideo() override { return false; }
    int GetWidth() override { return width; }
    int GetHeight() override { return height; }
    int GetColorSpace() override { return RGB24; }
    int GetFrameCount() override { return frameCount; }

    const int width, height, frameCount;
    const std::shared_ptr<Stage> stage;
};
