#include "engine/model/file_record.h"

#include <gtest/gtest.h>

#include <fstream>

#include "platform/text.h"
#include "video/color_space.h"

namespace {

/// A file of two 4 by 2 frames of luma; the name says nothing of its contents.
std::wstring RawFile(const std::string& name) {
    const std::string path = testing::TempDir() + name;
    std::ofstream(path, std::ios::binary) << "16 samples - two";
    return FromUtf8(path);
}

std::wstring Y4mFile() {
    const std::string path = testing::TempDir() + "tolvane_record_test.y4m";
    std::ofstream(path, std::ios::binary) << "YUV4MPEG2 W4 H2 F25:1\nFRAME\n" << std::string(8 + 2 + 2, 'x');
    return FromUtf8(path);
}

TEST(FileRecord, OpenSource) {
    const std::wstring raw = RawFile("tolvane_record_test.yuv");
    const std::wstring script = RawFile("tolvane_record_test.AVS");
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
        {"a file that describes itself", Y4mFile(), false, 0, 0, 1},
        {"through a generated script", Y4mFile(), true, 0, 0, 0},
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

}  // namespace
