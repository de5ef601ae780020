#include "video/display_picture.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

#include "video/color_space.h"
#include "video/video_image.h"

namespace {

// Red above, blue below; the first row of the result is the picture's last one.
TEST(DisplayPicture, StandsUprightInEveryLayout) {
    // 16 by 2 pixels. Full-range matrix: red is 76, 84, 255 and blue 29, 255, 107, within rounding.
    const auto planes = [](std::initializer_list<std::pair<int, int>> upperAndLower, int sampleBytes) {
        std::string bytes;
        for (const auto& [upper, lower] : upperAndLower) {
            for (const int sample : {upper, lower}) {
                for (int x = 0; x < 16; ++x)
                    for (int i = 0; i < sampleBytes; ++i) bytes += static_cast<char>(sample >> (8 * i));
            }
        }
        return bytes;
    };
    std::string bottomUp;
    for (const char* pixel : {"\xFF\0\0", "\0\0\xFF"})
        for (int x = 0; x < 16; ++x) bottomUp += std::string(pixel, 3);
    const struct {
        int colorSpace;
        std::string frame;
    } kCases[] = {
        {RGB24, bottomUp},
        {YUV, planes({{76, 29}, {84, 255}, {255, 107}}, 1)},
        {P410_RGB, planes({{0, 0}, {0, 1023}, {1023, 0}}, 2)},
        {P416, planes({{76 << 8, 29 << 8}, {84 << 8, 255 << 8}, {255 << 8, 107 << 8}}, 2)},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.colorSpace);
        rkVideoImage frame, scratch, picture;
        frame.Create(16, 2, c.colorSpace, 0);
        frame.LoadFrame(reinterpret_cast<const std::uint8_t*>(c.frame.data()));
        ASSERT_TRUE(MakeDisplayPicture(frame, 1, scratch, picture));
        ASSERT_EQ(RGB24, picture.ColorSpace());
        const std::uint8_t* lower = picture.Row(0, 0);
        const std::uint8_t* upper = picture.Row(0, 1);
        EXPECT_GT(lower[0], 245);
        EXPECT_LT(lower[2], 20);
        EXPECT_GT(upper[2], 200);
        EXPECT_LT(upper[0], 20);
    }
    rkVideoImage none, scratch, picture;
    EXPECT_FALSE(MakeDisplayPicture(none, 1, scratch, picture));
}

}  // namespace
