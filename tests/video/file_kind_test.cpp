#include "video/file_kind.h"

#include <gtest/gtest.h>

namespace {

TEST(FileKind, ByTheEndingInAnyCase) {
    const struct {
        const wchar_t* name;
        const char* kind;
    } kCases[] = {{L"/clips/orig.AVI", "avi"},
                  {L"a.mov", "mov"},
                  {L"a.Avs", "avs"},
                  {L"a.bmp", "bmp"},
                  {L"a.y4M", "y4m"},
                  {L"a.YUV", "raw"},
                  {L"a.yuv10", "raw"},
                  {L"a.rgb", "raw"},
                  {L"a.yuv16", "raw"},
                  {L"a.rgb6", "raw"},
                  {L"a.yuv1", ""},
                  {L"a.avi.txt", ""},
                  {L"vi", ""},
                  {L"notaavi", "avi"}};
    for (const auto& c : kCases) {
        std::string kind;
        if (rkIsAviName(c.name)) kind += "avi";
        if (rkIsMovName(c.name)) kind += "mov";
        if (rkIsAvsName(c.name)) kind += "avs";
        if (rkIsBmpName(c.name)) kind += "bmp";
        if (rkIsY4mName(c.name)) kind += "y4m";
        if (rkIsRawName(c.name)) kind += "raw";
        EXPECT_EQ(c.kind, kind) << testing::PrintToString(c.name);
    }
}

}  // namespace
