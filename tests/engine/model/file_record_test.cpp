#include "engine/model/file_record.h"

#include <gtest/gtest.h>

#include "platform/text.h"
#include "tests/temporary_directory.h"
#include "video/color_space.h"

namespace {

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

}  // namespace
