#include "engine/model/file_record.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include "tests/temporary_directory.h"
#include "video/color_space.h"

namespace {

namespace fs = std::filesystem;

struct FileRecordTest : testing::Test {
    FileRecordTest() { fs::current_path(directory.Root()); }
    ~FileRecordTest() override { fs::current_path(old); }

    const fs::path old = fs::current_path();
    const TemporaryDirectory directory;
    const std::string frames = std::string(24, 'x');  // two of 4 by 2 in 4:2:0
};

// The content, not the name, is what opens a file through a script; and no script is left behind.
TEST_F(FileRecordTest, OpenSource) {
    const std::string y4m = "YUV4MPEG2 W4 H2 F25:1\nFRAME\n" + frames.substr(12);
    for (const char* name : {"a.yuv", "a.AVS"}) directory.Write(name, frames);
    for (const char* name : {"a.y4m", "a.mkv"}) directory.Write(name, y4m);
    struct Script {
        int filter = 0;
        const wchar_t* parameters = L"";
        bool onlyPreferred = false;
    };
    struct Size {
        int width = 0, height = 0;
    };
    using Row = std::tuple<const char*, const wchar_t*, std::optional<Script>, Size, int>;
    const std::vector<Row> rows = {
        {"raw with its size", L"a.yuv", {}, {4, 2}, 2},
        {"only a width", L"a.yuv", {}, {4, 0}, 0},
        {"a negative width", L"a.yuv", {}, {-4, 2}, 0},
        {"raw without a size", L"a.yuv", {}, {}, 0},
        {"a file that describes itself", L"a.y4m", {}, {}, 1},
        {"no such file", L"gone.yuv", {}, {4, 2}, 0},
        {"a script gets no second one around it", L"a.AVS", Script(), {4, 2}, 2},
        {"the preferred filter", L"a.mkv", Script{4, L"", true}, {}, 1},
        {"by its path", L"./a.mkv", Script{5, L"", true}, {}, 1},
        {"another one's defaults after the preferred fails", L"a.mkv", Script{0}, {}, 1},
        {"the preferred filter and no other", L"a.mkv", Script{0, L"", true}, {}, 0},
        {"wrong parameters of the user's", L"a.mkv", Script{4, L"fps = 25", true}, {}, 0},
        {"the same filter again with its defaults", L"a.mkv", Script{4, L"fps = 25"}, {}, 1},
        {"no filter's number", L"a.mkv", Script{8, L"", true}, {}, 0},
        {"no filter's number, then the others", L"a.mkv", Script{-1}, {}, 1},
        {"a raw file", L"a.yuv", Script{7, L"4, 2, \"I420\"", true}, {4, 2}, 2},
        {"a raw file after the preferred fails", L"a.yuv", Script{0}, {4, 2}, 2},
        {"a raw file without a size", L"a.yuv", Script{0}, {}, 0},
        {"only a width", L"a.mkv", Script{0}, {4, 0}, 0},
        {"a negative size", L"a.mkv", Script{0}, {-4, -2}, 0},
        {"no such file", L"gone.mkv", Script{4}, {}, 0},
        {"a quote, which would end the name in a script", L"a.mkv\")#", Script{4}, {}, 0},
    };
    for (const auto& [what, name, script, size, frameCount] : rows) {
        SCOPED_TRACE(what);
        const auto [filter, parameters, onlyPreferred] = script.value_or(Script());
        const FileRecord record = {.name = L"shown, not opened",
                                   .sourceName = name,
                                   .useAvs = script.has_value(),
                                   .onlyPreferred = onlyPreferred,
                                   .filter = filter,
                                   .parameters = parameters,
                                   .width = size.width,
                                   .height = size.height,
                                   .yuvType = IYUV};
        const auto source = record.OpenSource(true);
        EXPECT_FALSE(fs::exists("!!%__#$@&.avs"));
        ASSERT_EQ(frameCount > 0, source != nullptr);
        if (source == nullptr) continue;
        EXPECT_EQ(std::tuple(4, 2, frameCount),
                  std::tuple(source->GetWidth(), source->GetHeight(), source->GetFrameCount()));
        EXPECT_EQ(script && record.sourceName != L"a.AVS" ? YV12 : IYUV, source->GetColorSpace());
    }
}

TEST_F(FileRecordTest, OpensOneFileAtATime) {
    directory.Write("a.yuv", frames);
    const FileRecord record = {
        .name = {}, .sourceName = L"a.yuv", .parameters = {}, .width = 4, .height = 2, .yuvType = Y};
    std::unique_lock another(FileOpeningMutex());
    auto opening = std::async(std::launch::async, [&record] { return record.OpenSource(true); });
    EXPECT_EQ(std::future_status::timeout, opening.wait_for(std::chrono::milliseconds(20)));
    another.unlock();
    EXPECT_NE(nullptr, opening.get());
}

}  // namespace
