#include "video/avisynth/script_filter.h"

#include <gtest/gtest.h>

#include "video/color_space.h"

namespace {

TEST(ScriptFilter, DefaultParameters) {
    const rkScriptInput input = {L"a.yuv", L"mine", 352, 288, IYUV};
    const struct {
        int filter;
        const wchar_t* parameters;
    } kCases[] = {
        {-1, L""},
        {0, L"audio = false, pixel_type = \"RGB24\""},
        {1, L"audio = false, pixel_type = \"RGB24\""},
        {2, L"audio = false, pixel_type = \"RGB24\""},
        {3, L"audio = false, pixel_type = \"RGB24\""},
        {4, L""},
        {5, L""},
        {6, L"color = 2, quality = 100, audio = false, mode = 0"},
        {7, L"352, 288, \"I420\""},
        {8, L""},
    };
    for (const auto& c : kCases) EXPECT_EQ(c.parameters, rkDefaultParameters(input, c.filter)) << c.filter;
}

TEST(ScriptFilter, RawFormats) {
    const struct {
        int yuvType;
        const wchar_t* format;
    } kCases[] = {{YV12, L"YV12"}, {IYUV, L"I420"}, {Y, L"Y8"},      {UYVY, L"UYVY"},
                  {YUY2, L"YUYV"}, {VYUY, L"VYUY"}, {YVYU, L"YVYU"}, {P010, L"unknown format"}};
    for (const auto& c : kCases) {
        const std::wstring expected = std::wstring(L"16, 8, \"") + c.format + L"\"";
        EXPECT_EQ(expected, rkDefaultParameters({L"a", L"", 16, 8, c.yuvType}, rkRawSourceFilter));
    }
}

TEST(ScriptFilter, ByName) {
    const wchar_t* kNames[][2] = {
        {L"AviSource", L"AviSource"},
        {L"OpenDMLSource", L"opendmlsource"},
        {L"AviFileSource", L"AviFileSource"},
        {L"DirectShowSource", L"DirectShowSource"},
        {L"DirectShowSource2", L"dss2"},
        {L"FFMpegSource", L"FFVideoSource"},
        {L"QTSource", L"QTInput"},
        {L"RawSource", L"RAWSOURCE"},
    };
    for (int filter = 0; filter < 8; ++filter) {
        for (const wchar_t* name : kNames[filter]) EXPECT_EQ(filter, rkScriptFilterByName(name));
    }
    for (const wchar_t* name : {L"", L"Source", L"dss", L"dss22"}) EXPECT_EQ(-1, rkScriptFilterByName(name));
}

TEST(ScriptFilter, ForFile) {
    const struct {
        const wchar_t* name;
        int filter;
    } kCases[] = {{L"a.yuv", 7}, {L"a.YUV16", 7}, {L"a.AVI", 0}, {L"a.mov", 6}, {L"a.mp4", 4}, {L"a", 4}};
    for (const auto& c : kCases) EXPECT_EQ(c.filter, rkScriptFilterForFile(c.name));
}

TEST(ScriptFilter, Text) {
    const rkScriptInput input = {L"C:\\v\\a.mpg", L"", 0, 0, 0};
    EXPECT_EQ(L"loadplugin(\"avs_plugins\\FFMpegSource.dll\")\nFFVideoSource(\"C:\\v\\a.mpg\")",
              rkScriptText(input, rkFFMpegSourceFilter, L""));
    EXPECT_EQ(L"loadplugin(\"avs_plugins\\avss.dll\")\ndss2(\"C:\\v\\a.mpg\", x = 1)",
              rkScriptText(input, rkDirectShowSource2Filter, L"x = 1"));
    EXPECT_EQ(L"loadplugin(\"avs_plugins\\QTSource.dll\")\nQTInput(\"C:\\v\\a.mpg\", color = 2)",
              rkScriptText(input, rkQTSourceFilter, L"color = 2"));
    EXPECT_EQ(L"loadplugin(\"avs_plugins\\rawsource.dll\")\nRawSource(\"C:\\v\\a.mpg\", 352, 288, \"I420\")",
              rkScriptText(input, rkRawSourceFilter, L"352, 288, \"I420\""));
    EXPECT_EQ(L"AviSource(\"C:\\v\\a.mpg\", audio = false, pixel_type = \"RGB24\")",
              rkScriptText(input, rkAviSourceFilter, rkDefaultParameters(input, rkAviSourceFilter)));
}

}  // namespace
