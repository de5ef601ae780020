#include "report/frames/frame_reader.h"

#include <gtest/gtest.h>

#include <future>
#include <new>
#include <stdexcept>
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

struct FrameReaderTest : testing::Test {
    ~FrameReaderTest() override { EXPECT_TRUE(LooseThreadsEnd(20s)); }

    std::unique_ptr<FrameReader> Reader(std::initializer_list<int> files) {
        FrameReader::Sources sources;
        for (const int file : files) sources[file] = std::make_unique<FailingVideo>(16, 2, 100, shared);
        return std::make_unique<FrameReader>(
            std::move(sources), 1, [this](const FrameReader::Result& result) {
                const rkVideoImage* const picture = result.picture;
                EXPECT_EQ(RGB24, picture ? picture->ColorSpace() : RGB24);
                const int top = picture ? picture->Row(0, picture->VisibleHeight() - 1)[2] : 0;
                const int bottom = picture ? picture->Row(0, 0)[1] : 0;
                stage.Tell(
                    [&] { results.emplace_back(result.file, result.frame, result.error, top, bottom); });
            });
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
        stage.Wait([&] { return results.size() > count; });
        ASSERT_EQ(++count, results.size());
        EXPECT_EQ(expected, results.back());
    }
    EXPECT_NE(std::this_thread::get_id(), stage.thread);
    reader.reset();
    EXPECT_TRUE(LooseThreadsEnd(20s));
    EXPECT_EQ(2, stage.closed);
}

TEST_F(FrameReaderTest, DoesntWaitForARead) {
    stage.gate = 1;
    auto reader = Reader({0});
    reader->Request(0, 1);
    stage.Wait([&] { return stage.read.size() == 1; });
    reader->Request(0, 2);
    auto going = std::async(std::launch::async, [&reader] { reader.reset(); });
    EXPECT_EQ(std::future_status::ready, going.wait_for(10s));
    stage.Tell([&] { stage.gate = 100; });
    EXPECT_TRUE(LooseThreadsEnd(20s));
    EXPECT_EQ((std::vector<int>{1}), stage.read) << "the pending request is dropped";
    EXPECT_TRUE(results.empty()) << "nothing is delivered to an owner that has gone";
    EXPECT_EQ(1, stage.closed);
}

}  // namespace
