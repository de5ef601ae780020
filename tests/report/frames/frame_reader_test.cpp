#include "report/frames/frame_reader.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <mutex>
#include <new>
#include <stdexcept>
#include <thread>
#include <tuple>

#include "platform/loose_threads.h"
#include "tests/report/frames/test_video.h"

namespace {

using namespace std::chrono_literals;

/// A video whose frames fail in further ways.
struct FailingVideo : TestVideo {
    using TestVideo::TestVideo;
    int ReadFrameImage(rkVideoImage& image, int frame) override {
        if (frame == 14) throw std::bad_alloc();
        if (frame == 16) throw std::length_error("a codec's");
        if (frame != 15) return TestVideo::ReadFrameImage(image, frame);
        image.Create(16, 2, VYUY, 0);
        return 0;
    }
};

/// File, frame, error, and of the picture the red at the top and the green at the bottom.
using Delivered = std::tuple<int, int, std::wstring, int, int>;

/// Whether the reader goes while its thread is stuck.
bool GoesAtOnce(std::unique_ptr<FrameReader> reader, const std::function<void()>& unstick) {
    auto going = std::async(std::launch::async, [&reader] { reader.reset(); });
    const bool hasGone = going.wait_for(10s) == std::future_status::ready;
    unstick();
    return hasGone;
}

struct FrameReaderTest : testing::Test {
    ~FrameReaderTest() override { EXPECT_TRUE(LooseThreadsEnd(20s)); }

    FrameReader::Receiver Receiver() {
        return [this](const FrameReader::Result& result) {
            int top = 0;
            int bottom = 0;
            if (const rkVideoImage* picture = result.picture) {
                EXPECT_EQ(RGB24, picture->ColorSpace());
                top = picture->Row(0, picture->VisibleHeight() - 1)[2];
                bottom = picture->Row(0, 0)[1];
            }
            stage.Tell([&] { results.emplace_back(result.file, result.frame, result.error, top, bottom); });
        };
    }

    std::unique_ptr<FrameReader> Reader(std::initializer_list<int> files) {
        FrameReader::Sources sources;
        for (const int file : files) sources[file] = std::make_unique<FailingVideo>(16, 2, 100, shared);
        return std::make_unique<FrameReader>(std::move(sources), 1, Receiver());
    }

    /// A reader that is stuck in the reading of frame 1.
    std::unique_ptr<FrameReader> StuckReader() {
        stage.gate = 1;
        auto reader = Reader({0});
        reader->Request(0, 1);
        stage.Wait([&] { return stage.read.size() == 1; });
        return reader;
    }
    void Unstick() {
        stage.Tell([&] { stage.gate = 100; });
    }

    void WaitForResults(std::size_t count) {
        stage.Wait([&] { return results.size() >= count; });
    }

    const std::shared_ptr<Stage> shared = std::make_shared<Stage>();
    Stage& stage = *shared;
    std::vector<Delivered> results;
};

TEST_F(FrameReaderTest, DeliversPicturesAndReasons) {
    auto reader = Reader({0, 2});
    stage.badFrame = 13;
    const Delivered kExpected[] = {
        {2, 4, L"", 4, 1},
        {0, 5, L"", 5, 1},
        {1, 5, L"The file isn't open", 0, 0},
        {0, 13, L"Error 7", 0, 0},
        {0, 14, L"There isn't enough memory for the frame", 0, 0},
        {0, 15, L"Frames of this layout can't be shown", 0, 0},
        {0, 16, L"The frame can't be read", 0, 0},
        {0, 6, L"", 6, 1},
    };
    std::size_t count = 0;
    for (const Delivered& expected : kExpected) {
        reader->Request(std::get<0>(expected), std::get<1>(expected));
        WaitForResults(++count);
        ASSERT_EQ(count, results.size());
        EXPECT_EQ(expected, results.back());
    }
    EXPECT_NE(std::this_thread::get_id(), stage.thread);
    reader.reset();
    EXPECT_TRUE(LooseThreadsEnd(20s));
    EXPECT_EQ(2, stage.closed);
}

TEST_F(FrameReaderTest, ANewerRequestReplacesOneThatHasntBegun) {
    auto reader = StuckReader();
    for (int frame = 2; frame <= 12; ++frame) reader->Request(0, frame);
    Unstick();
    WaitForResults(2);
    reader.reset();
    EXPECT_TRUE(LooseThreadsEnd(20s));
    EXPECT_EQ((std::vector<int>{1, 12}), stage.read);
    EXPECT_EQ(2u, results.size());
    EXPECT_EQ(12, std::get<1>(results.back()));
}

TEST_F(FrameReaderTest, DoesntWaitForARead) {
    auto reader = StuckReader();
    reader->Request(0, 2);
    EXPECT_TRUE(GoesAtOnce(std::move(reader), [&] { Unstick(); }));
    EXPECT_TRUE(LooseThreadsEnd(20s));
    EXPECT_EQ((std::vector<int>{1}), stage.read) << "the pending request is dropped";
    EXPECT_TRUE(results.empty()) << "nothing is delivered to an owner that has gone";
    EXPECT_EQ(1, stage.closed);
}

TEST_F(FrameReaderTest, DoesntWaitForAnOpening) {
    std::unique_lock another(FileOpeningMutex());
    bool hasOpened = false;
    auto reader =
        std::make_unique<FrameReader>(std::map<int, FileRecord>{{0, {}}, {1, {}}}, 1, Receiver(),
                                      [&](const std::vector<FrameReader::OpenedFile>&) { hasOpened = true; });
    EXPECT_FALSE(LooseThreadsEnd(20ms)) << "it is in the opening";
    EXPECT_TRUE(GoesAtOnce(std::move(reader), [&] { another.unlock(); }));
    EXPECT_TRUE(LooseThreadsEnd(20s));
    EXPECT_FALSE(hasOpened);
}

}  // namespace
