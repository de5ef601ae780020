#include "video/display.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/video/packed_frame.h"
#include "video/display_picture.h"

namespace {

using Bgr = std::array<int, 3>;

// Expected values from a few lines of Python on its doubles.
TEST(Display, Matrices) {
    const std::tuple<int, std::uint8_t, std::uint8_t, std::uint8_t, Bgr> kCases[] = {
        {0, 16, 128, 128, {0, 0, 0}},        {0, 235, 128, 128, {254, 254, 254}},  // 254.916 is cut
        {0, 255, 128, 128, {255, 255, 255}}, {0, 100, 200, 50, {243, 133, 0}},
        {0, 60, 0, 0, {0, 205, 0}},          {0, 81, 90, 240, {0, 0, 254}},
        {1, 16, 128, 128, {16, 16, 16}},     {1, 100, 200, 50, {246, 116, 11}},
        {1, 60, 0, 0, {0, 184, 0}},          {1, 81, 90, 240, {3, 30, 208}},
    };
    // Two rows of two pixels, rows of planes 3 apart, of pixels 8: the wanted pixel is the last, the others
    // are black.
    for (const auto& [matrix, y, u, v, bgr] : kCases) {
        SCOPED_TRACE(testing::Message() << matrix << ": " << testing::PrintToString(bgr));
        const Bytes planes = {0, 0, 9, 0, y, 9, 128, 128, 9, 128, u, 9, 128, 128, 9, 128, v, 9};
        Bytes picture(16, 77);
        rkYuvPlanesToRgb24(planes.data(), picture.data(), 2, 2, 3, 8, matrix);
        EXPECT_EQ(bgr, (Bgr{picture[11], picture[12], picture[13]}));
        EXPECT_EQ((Bgr{0, 0, 0}), (Bgr{picture[8], picture[9], picture[10]}));
        EXPECT_EQ(77, picture[6]);
        EXPECT_EQ(77, picture[15]);
    }
}

// Red above, blue below; the first row of the result is the picture's last one. In the full-range matrix red
// is 76, 84, 255 and blue 29, 255, 107, within rounding.
TEST(DisplayPicture, StandsUprightInEveryLayout) {
    const std::pair<int, Bytes> kCases[] = {
        {RGB24, {255, 0, 0, 0, 0, 0, 255, 0}},
        {YUV, {76, 29, 84, 255, 255, 107}},
        {P410_RGB, {0, 0, 0, 0, 0, 0, 0xFF, 3, 0xFF, 3, 0, 0}},
        {P416, {0, 76, 0, 29, 0, 84, 0, 255, 0, 255, 0, 107}},
    };
    rkVideoImage frame, scratch, picture;
    EXPECT_FALSE(MakeDisplayPicture(frame, 1, scratch, picture));
    for (const auto& [colorSpace, bytes] : kCases) {
        SCOPED_TRACE(colorSpace);
        Load(frame, 1, 2, colorSpace, bytes);
        ASSERT_TRUE(MakeDisplayPicture(frame, 1, scratch, picture));
        ASSERT_EQ(RGB24, picture.ColorSpace());
        const std::uint8_t *lower = picture.Row(0, 0), *upper = picture.Row(0, 1);
        EXPECT_GT(lower[0], 245);
        EXPECT_LT(lower[2], 20);
        EXPECT_GT(upper[2], 200);
        EXPECT_LT(upper[0], 20);
    }
}

}  // namespace
