#include "report/frames/frame_reader.h"

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <future>
#include <mutex>
#include <new>
#include <stdexcept>
#include <thread>

#include "platform/loose_threads.h"
#include "platform/text.h"
#include "video/color_space.h"

namespace {

/// A lock, and what the test and the sources tell each other under it.
struct Stage {
    void Wait(const std::function<bool()>& isReached) {
        std::unique_lock lock(mutex);
        ASSERT_TRUE(changed.wait_for(lock, std::chrono::seconds(20), isReached));
    }
    template <typename Change>
    void Tell(Change change) {
        {
            const std::lock_guard lock(mutex);
            change();
        }
        changed.notify_all();
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::vector<int> read;  // frames, as the sources were asked for them
    int gate = 1 << 30;     // frames from here on are read only when this is raised
    int closed = 0;
    std::thread::id thread;
};

/// Grey frames, two pixels high: frame n has the luma 16 + n above, and below that plus 100.
struct GreySource : rkIVideoSource {
    explicit GreySource(Stage& stage) : stage(stage) {}

    int ReadFrameImage(rkVideoImage& image, int frame) override {
        stage.Tell([&] {
            stage.read.push_back(frame);
            stage.thread = std::this_thread::get_id();
        });
        {
            std::unique_lock lock(stage.mutex);
            stage.changed.wait(lock, [&] { return frame < stage.gate; });
        }
        if (frame == 13) return 7;
        if (frame == 14) throw std::bad_alloc();
        if (frame == 16) throw std::length_error("a codec's");
        image.Create(16, 2, frame == 15 ? VYUY : YUV, 0);
        std::string packed(16 * 2, static_cast<char>(16 + frame));
        packed.replace(16, 16, std::string(16, static_cast<char>(116 + frame)));
        packed += std::string(2 * 16 * 2, '\x80');
        if (frame != 15) image.LoadFrame(reinterpret_cast<const std::uint8_t*>(packed.data()));
        return 0;
    }
    int Close() override {
        stage.Tell([&] { ++stage.closed; });
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
    bool IsBadFrameNumber(int) override { return false; }
    bool IsEndOfVideo() override { return false; }
    int GetWidth() override { return 16; }
    int GetHeight() override { return 2; }
    int GetColorSpace() override { return YUV; }

    Stage& stage;
};

struct Delivered {
    int file, frame;
    std::wstring error;
    int top, bottom;  // the blue of the picture's first and last row
    friend bool operator==(const Delivered&, const Delivered&) = default;
};

bool ThreadsEnd() {
    return LooseThreadsEnd(std::chrono::seconds(20));
}

/// Whether the reader goes while its thread is stuck.
bool GoesAtOnce(std::unique_ptr<FrameReader> reader, const std::function<void()>& unstick) {
    auto going = std::async(std::launch::async, [&reader] { reader.reset(); });
    const bool hasGone = going.wait_for(std::chrono::seconds(10)) == std::future_status::ready;
    unstick();
    return hasGone;
}

struct FrameReaderTest : testing::Test {
    ~FrameReaderTest() override { EXPECT_TRUE(ThreadsEnd()); }

    FrameReader::Receiver Receiver() {
        return [this](const FrameReader::Result& result) {
            Delivered delivered = {result.file, result.frame, result.error, 0, 0};
            if (const rkVideoImage* picture = result.picture) {
                EXPECT_EQ(RGB24, picture->ColorSpace());
                delivered.top = *picture->Row(0, picture->VisibleHeight() - 1);
                delivered.bottom = *picture->Row(0, 0);
            }
            stage.Tell([&] { results.push_back(delivered); });
        };
    }

    std::unique_ptr<FrameReader> Reader(std::initializer_list<int> files) {
        FrameReader::Sources sources;
        for (const int file : files) sources[file] = std::make_unique<GreySource>(stage);
        return std::make_unique<FrameReader>(std::move(sources), 1, Receiver());
    }

    void WaitForResults(std::size_t count) {
        stage.Wait([&] { return results.size() >= count; });
    }

    Stage stage;
    std::vector<Delivered> results;
};

TEST_F(FrameReaderTest, DeliversPicturesAndReasons) {
    auto reader = Reader({0, 2});
    const Delivered kExpected[] = {
        {2, 4, L"", 20, 120},
        {0, 5, L"", 21, 121},
        {1, 5, L"The file isn't open", 0, 0},
        {0, 13, L"Error 7", 0, 0},
        {0, 14, L"There isn't enough memory for the frame", 0, 0},
        {0, 15, L"Frames of this layout can't be shown", 0, 0},
        {0, 16, L"The frame can't be read", 0, 0},
        {0, 6, L"", 22, 122},
    };
    std::size_t count = 0;
    for (const Delivered& expected : kExpected) {
        reader->Request(expected.file, expected.frame);
        WaitForResults(++count);
        ASSERT_EQ(count, results.size());
        EXPECT_EQ(expected, results.back()) << expected.frame;
    }
    EXPECT_NE(std::this_thread::get_id(), stage.thread);
    reader.reset();
    EXPECT_TRUE(ThreadsEnd());
    EXPECT_EQ(2, stage.closed);
}

TEST_F(FrameReaderTest, ANewerRequestReplacesOneThatHasntBegun) {
    auto reader = Reader({0});
    stage.gate = 1;
    reader->Request(0, 1);
    stage.Wait([&] { return stage.read.size() == 1; });
    for (int frame = 2; frame <= 12; ++frame) reader->Request(0, frame);
    stage.Tell([&] { stage.gate = 100; });
    WaitForResults(2);
    reader.reset();
    EXPECT_TRUE(ThreadsEnd());
    EXPECT_EQ((std::vector<int>{1, 12}), stage.read);
    EXPECT_EQ(12, results.back().frame);
    EXPECT_EQ(2u, results.size());
}

TEST_F(FrameReaderTest, DoesntWaitForARead) {
    auto reader = Reader({0});
    stage.gate = 1;
    reader->Request(0, 1);
    stage.Wait([&] { return stage.read.size() == 1; });
    reader->Request(0, 2);
    EXPECT_TRUE(GoesAtOnce(std::move(reader), [&] { stage.Tell([&] { stage.gate = 100; }); }));
    EXPECT_TRUE(ThreadsEnd());
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
    EXPECT_FALSE(LooseThreadsEnd(std::chrono::milliseconds(20))) << "it is in the opening";
    EXPECT_TRUE(GoesAtOnce(std::move(reader), [&] { another.unlock(); }));
    EXPECT_TRUE(ThreadsEnd());
    EXPECT_FALSE(hasOpened);
}

}  // namespace
