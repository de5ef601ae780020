#include "engine/model/file_record.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include "platform/text.h"
#include "tests/temporary_directory.h"
#include "video/color_space.h"

namespace {

namespace fs = std::filesystem;

TEST(FileRecord, OpenSource) {
    const std::string frames(16, 'x');  // two of 4 by 2 luma
    const TemporaryDirectory directory;
    const auto file = [&](const std::string& name, const std::string& bytes) {
        return FromUtf8(directory.Write(name, bytes));
    };
    const std::wstring raw = file("a.yuv", frames);
    const std::wstring script = file("a.AVS", frames);
    const std::wstring y4m = file("a.y4m", "YUV4MPEG2 W4 H2 F25:1\nFRAME\n" + frames.substr(0, 8 + 2 + 2));
    const struct {
        const char* what;
        std::wstring path;
        bool useAvs;
        int width, height;
        int frames;  // 0: doesn't open
    } cases[] = {
        {"raw with its size", raw, false, 4, 2, 2},
        {"only a width", raw, false, 4, 0, 0},
        {"a negative width", raw, false, -4, 2, 0},
        {"raw without a size", raw, false, 0, 0, 0},
        {"a file that describes itself", y4m, false, 0, 0, 1},
        {"through a generated script", y4m, true, 0, 0, 1},
        {"a script gets no second one around it", script, true, 4, 2, 2},
        {"no such file", raw + L".gone", false, 4, 2, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        FileRecord record;
        record.name = L"shown, not opened";
        record.sourceName = c.path;
        record.useAvs = c.useAvs;
        record.width = c.width;
        record.height = c.height;
        record.yuvType = Y;
        const auto source = record.OpenSource(true);
        ASSERT_EQ(c.frames > 0, source != nullptr);
        if (source == nullptr) continue;
        EXPECT_EQ(4, source->GetWidth());
        EXPECT_EQ(2, source->GetHeight());
        EXPECT_EQ(c.frames, source->GetFrameCount());
    }
}

// The content, not the name, is what opens a file through a script; and no script is left behind.
TEST(FileRecord, OpensThroughScripts) {
    const TemporaryDirectory directory;
    const fs::path old = fs::current_path();
    fs::current_path(directory.Root());
    directory.Write("a.mkv", "YUV4MPEG2 W4 H2 F25:1\nFRAME\n" + std::string(8 + 2 + 2, 'x'));
    directory.Write("a.yuv", std::string(24, 'x'));
    const struct {
        const char* what;
        const wchar_t* name;
        int filter;
        const wchar_t* parameters;
        bool onlyPreferred;
        int width, height;
        int frames;  // 0: doesn't open
    } kCases[] = {
        {"the preferred filter", L"a.mkv", 4, L"", true, 0, 0, 1},
        {"by its path", L"./a.mkv", 5, L"", true, 0, 0, 1},
        {"another one's defaults after the preferred fails", L"a.mkv", 0, L"", false, 0, 0, 1},
        {"the preferred filter and no other", L"a.mkv", 0, L"", true, 0, 0, 0},
        {"wrong parameters of the user's", L"a.mkv", 4, L"fps = 25", true, 0, 0, 0},
        {"the same filter again with its defaults", L"a.mkv", 4, L"fps = 25", false, 0, 0, 1},
        {"no filter's number", L"a.mkv", 8, L"", true, 0, 0, 0},
        {"no filter's number, then the others", L"a.mkv", -1, L"", false, 0, 0, 1},
        {"a raw file", L"a.yuv", 7, L"4, 2, \"I420\"", true, 4, 2, 2},
        {"a raw file after the preferred fails", L"a.yuv", 0, L"", false, 4, 2, 2},
        {"a raw file without a size", L"a.yuv", 0, L"", false, 0, 0, 0},
        {"only a width", L"a.mkv", 0, L"", false, 4, 0, 0},
        {"a negative size", L"a.mkv", 0, L"", false, -4, -2, 0},
        {"no such file", L"gone.mkv", 4, L"", false, 0, 0, 0},
        {"a quote, which would end the name in a script", L"a.mkv\")#", 4, L"", false, 0, 0, 0},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        FileRecord record;
        record.sourceName = c.name;
        record.useAvs = true;
        record.filter = c.filter;
        record.parameters = c.parameters;
        record.onlyPreferred = c.onlyPreferred;
        record.width = c.width;
        record.height = c.height;
        record.yuvType = IYUV;
        const auto source = record.OpenSource(true);
        EXPECT_FALSE(fs::exists("!!%__#$@&.avs"));
        ASSERT_EQ(c.frames > 0, source != nullptr);
        if (source == nullptr) continue;
        EXPECT_EQ(4, source->GetWidth());
        EXPECT_EQ(2, source->GetHeight());
        EXPECT_EQ(c.frames, source->GetFrameCount());
        EXPECT_EQ(YV12, source->GetColorSpace());
    }
    fs::current_path(old);
}

TEST(FileRecord, OpensOneFileAtATime) {
    const TemporaryDirectory directory;
    FileRecord record;
    record.sourceName = FromUtf8(directory.Write("a.yuv", std::string(8, 'x')));
    record.width = 4;
    record.height = 2;
    record.yuvType = Y;
    std::unique_lock another(FileOpeningMutex());
    auto opening = std::async(std::launch::async, [&record] { return record.OpenSource(true); });
    EXPECT_EQ(std::future_status::timeout, opening.wait_for(std::chrono::milliseconds(20)));
    another.unlock();
    EXPECT_NE(nullptr, opening.get());
}

}  // namespace
