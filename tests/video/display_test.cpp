#include "video/display.h"

#include "video/layout_list.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace {

using Bgr = std::array<int, 3>;

// Expected values from a few lines of Python on its doubles.
TEST(Display, Matrices) {
    const struct {
        int matrix, y, u, v;
        Bgr bgr;
    } kCases[] = {
        {0, 16, 128, 128, {0, 0, 0}},        {0, 235, 128, 128, {254, 254, 254}},  // 254.916 is cut
        {0, 255, 128, 128, {255, 255, 255}}, {0, 100, 200, 50, {243, 133, 0}},
        {0, 60, 0, 0, {0, 205, 0}},          {0, 81, 90, 240, {0, 0, 254}},
        {1, 16, 128, 128, {16, 16, 16}},     {1, 100, 200, 50, {246, 116, 11}},
        {1, 60, 0, 0, {0, 184, 0}},          {1, 81, 90, 240, {3, 30, 208}},
    };
    // Two rows of two pixels, rows of planes 3 apart, of pixels 8: the wanted pixel is the last, the others
    // are black.
    for (const auto& c : kCases) {
        std::vector<std::uint8_t> planes = {0,   0,   9, 0,   0,   9, 128, 128, 9,
                                            128, 128, 9, 128, 128, 9, 128, 128, 9};
        planes[4] = static_cast<std::uint8_t>(c.y);
        planes[10] = static_cast<std::uint8_t>(c.u);
        planes[16] = static_cast<std::uint8_t>(c.v);
        std::vector<std::uint8_t> picture(16, 77);
        rkYuvPlanesToRgb24(planes.data(), picture.data(), 2, 2, 3, 8, c.matrix);
        SCOPED_TRACE(testing::Message() << c.matrix << ": " << c.y << " " << c.u << " " << c.v);
        EXPECT_EQ(c.bgr, (Bgr{picture[11], picture[12], picture[13]}));
        EXPECT_EQ((Bgr{0, 0, 0}), (Bgr{picture[8], picture[9], picture[10]}));
        EXPECT_EQ(77, picture[6]);
        EXPECT_EQ(77, picture[15]);
    }
}

TEST(LayoutList, TheCurrentLayoutIsFoundAndAnotherGivesTheFirst) {
    const struct {
        std::span<const rkLayoutItem> list;
        int colorSpace, position;
        const wchar_t* text;
    } kCases[] = {
        {rkInternalReaderLayouts(), 6, 0, L"IYUV (I420)"},
        {rkInternalReaderLayouts(), 3, 5, L"YUY2 (YUYV)"},
        {rkInternalReaderLayouts(), 22, 12, L"16 bit 4:2:2 yuv"},
        {rkInternalReaderLayouts(), 28, 18, L"16 bit 4:4:4 rgb"},
        {rkInternalReaderLayouts(), 15, 0, L"IYUV (I420)"},
        {rkScriptReaderLayouts(), 7, 3, L"Y"},
        {rkScriptReaderLayouts(), 15, 5, L"VYUY"},
        {rkScriptReaderLayouts(), 16, 7, L"YVYU"},
        {rkScriptReaderLayouts(), 17, 0, L"IYUV (I420)"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.colorSpace);
        const int position = rkLayoutPosition(c.list, c.colorSpace);
        EXPECT_EQ(c.position, position);
        EXPECT_STREQ(c.text, c.list[static_cast<std::size_t>(position)].text);
    }
    EXPECT_EQ(0, rkLayoutPosition({}, 6));
}

}  // namespace
