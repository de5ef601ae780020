#include "tests/kernels/targets.h"
#include "tests/video/packed_frame.h"
#include "video/display.h"
#include "video/display_picture.h"

#include <algorithm>
#include <array>

namespace {

using Pixel = std::array<int, 3>;

// A frame as its byte offsets tell it, pixel by pixel. An index past the end means the last byte or sample.
struct Frame {
    const Bytes& bytes;
    int colorSpace, w, h;

    int Byte(int i) const { return bytes[std::min(static_cast<std::size_t>(i), bytes.size() - 1)]; }
    int Sample(int i) const {
        i = std::min(i, static_cast<int>(bytes.size() / 2) - 1);
        constexpr int kUnused[] = {6, 8, 2};  // low bits of 14, of 16 and of 10
        return (Byte(2 * i) | Byte(2 * i + 1) << 8) >> kUnused[colorSpace % 3];
    }

    Pixel Interleaved422(int x, int y, int luma, int chroma) const {
        const int row = 2 * w * y, pair = row + x / 2 * 4;
        // The row is continued with copies of its last pixel, two bytes.
        const auto at = [&](int i) { return Byte(i < row + 2 * w ? i : i - 2); };
        return {at(pair + luma + x % 2 * 2), at(pair + chroma), at(pair + chroma + 2)};
    }

    Pixel Block410(int x, int y) const {
        const int b = 4 * w * y + x / 6 * 16;
        const auto hi = [&](int i) { return (((Byte(b + i) & 0x3F) << 4) | (Byte(b + i + 1) >> 4)) >> 2; };
        const auto lo = [&](int i) { return (((Byte(b + i) & 0x0F) << 6) | (Byte(b + i + 1) >> 2)) >> 2; };
        const Pixel pixels[] = {{hi(1), Byte(b), lo(2)},        {Byte(b + 4), Byte(b), lo(2)},
                                {lo(6), hi(5), Byte(b + 8)},    {hi(9), hi(5), Byte(b + 8)},
                                {Byte(b + 12), lo(10), hi(13)}, {lo(14), lo(10), hi(13)}};
        return pixels[x % 6];
    }

    Pixel At(int x, int y) const {
        const int i = y * w + x, wh = w * h;
        if (colorSpace == YUY2) return Interleaved422(x, y, 0, 1);
        if (colorSpace == UYVY) return Interleaved422(x, y, 1, 0);
        if (colorSpace == Y410) return Block410(x, y);
        if (colorSpace == Y) return {Byte(i), 0, 0};
        if (colorSpace >= P410_RGB)
            return {Sample(2 * wh + i), Sample(i), Sample(wh + i)};  // G, B, R in the file

        const bool is420 =
            colorSpace == YV12 || colorSpace == IYUV || (colorSpace >= P010 && colorSpace < P210);
        const bool is422 = colorSpace == YV16 || (colorSpace >= P210 && colorSpace <= P216);
        const int plane = is420 ? wh / 4 : is422 ? wh / 2 : wh;
        const int at = wh + (is420 ? y / 2 * (w / 2) + x / 2 : is422 ? y * (w / 2) + x / 2 : i);
        if (colorSpace >= P010) return {Sample(i), Sample(at), Sample(plane + at)};
        if (colorSpace == YV12) return {Byte(i), Byte(plane + at), Byte(at)};
        return {Byte(i), Byte(at), Byte(plane + at)};
    }
};

TEST(Convert, EveryLayoutToPlanesAtAwkwardSizes) {
    for (int colorSpace = YUV; colorSpace <= P416_RGB; ++colorSpace) {
        if (RawLineBytes(colorSpace, 1) == 0 || colorSpace == Packed422Deep) continue;
        for (const auto& [width, height] : kSizes) {
            for (const int border : {0, 8}) {
                const Bytes bytes = RandomFrame(colorSpace, width, height);
                const Frame frame = {bytes, colorSpace, width, height};
                rkVideoImage source, target;
                Load(source, width, height, colorSpace, bytes, border);
                ASSERT_TRUE(target.Convert(source, rkIsDeepRgb(colorSpace) ? RGBP : YUV, 8 - border, false));
                int misses = 0;  // the padding repeats the last column and row
                for (int y = 0; y < target.Height() - 2 * target.Border(); ++y) {
                    for (int x = 0; x < target.Width() - 2 * target.Border(); ++x) {
                        Pixel wanted = frame.At(std::min(x, width - 1), std::min(y, height - 1));
                        for (int& sample : wanted) sample &= 255;
                        const auto at = [&](int plane) { return target.Row(plane, y)[x]; };
                        misses += wanted != Pixel{at(0), at(1), at(2)};
                    }
                }
                EXPECT_EQ(0, misses) << colorSpace << ": " << width << "x" << height << " border " << border;
            }
        }
    }
}

// Packed frames by hand; chroma of formula sums by a Python program that rounds each step to single precision.
TEST(Convert, WorkedFrames) {
    // The last block of an odd side covers the pixel before the last too, with its own chroma.
    const Bytes odd420 = {20, 60, 100, 140, 180, 220, 30, 70, 110, 90, 200, 160};
    const Bytes oddRgb = {0,   16,  56,  206, 13, 96, 246, 53, 136, 0,   0,  0,   255, 93, 176, 245, 149, 216,
                          255, 189, 255, 0,   0,  0,  176, 0,  66,  135, 39, 106, 175, 79, 146, 0,   0,   0};
    const std::tuple<const char*, int, int, int, Bytes, int, Bytes> kCases[] = {
        {"white", RGB24, 1, 1, {255, 255, 255, 0}, YUV, {255, 128, 128}},
        {"black, a row's end is no pixel", RGB24, 1, 1, {0, 0, 0, 99}, YUV, {0, 128, 128}},
        {"red is limited above in V", RGB24, 1, 1, {0, 0, 255, 0}, YUV, {76, 91, 255}},
        {"green is limited below in V", RGB24, 1, 1, {0, 255, 0, 0}, YUV, {150, 54, 0}},
        {"107 less a rounding of single precision", RGB24, 1, 1, {70, 180, 0, 0}, YUV, {114, 106, 28}},
        {"10 less a rounding of the order of sums", RGB24, 1, 1, {6, 14, 2, 0}, YUV, {9, 126, 121}},
        {"fourth byte ignored", RGB32, 1, 1, {50, 100, 200, 77, 0, 0, 0, 0}, YUV, {124, 92, 195}},
        {"greenish, not grey", Y, 1, 1, {60}, YUV, {60, 0, 0}},
        {"and so in RGB", YUV, 1, 1, {60, 0, 0}, RGB24, {0, 185, 0, 0}},
        {"85 by a rounding of the order of sums", YUV, 1, 1, {14, 1, 93}, RGB24, {0, 85, 0, 0}},
        {"a pair in RGB", YUY2, 2, 1, {100, 90, 150, 200}, RGB24, {23, 73, 182, 73, 123, 232, 0, 0}},
        {"odd sides of 4:2:0", IYUV, 3, 3, odd420, RGB24, oddRgb},
        {"dropped", RGB32, 2, 1, {1, 2, 3, 4, 5, 6, 7, 8}, RGB24, {1, 2, 3, 5, 6, 7, 0, 0}},
        {"and added", RGB24, 2, 1, {1, 2, 3, 5, 6, 7, 9, 9}, RGB32, {1, 2, 3, 0, 5, 6, 7, 0}},
        {"planes R, G, B", RGB24, 2, 1, {1, 2, 3, 5, 6, 7, 9, 9}, RGBP, {3, 7, 2, 6, 1, 5}},
        {"and back", RGBP, 2, 1, {3, 7, 2, 6, 1, 5}, RGB24, {1, 2, 3, 5, 6, 7, 0, 0}},
        {"differences modulo 256", RGB24, 1, 1, {10, 200, 30, 0}, GDIF, {200, 86, 66}},
        {"and sums", GDIF, 1, 1, {200, 86, 66}, RGB24, {10, 200, 30, 0}},
        {"10 bits", P410, 2, 1, {255, 3, 3, 0, 0, 2, 4, 0, 0, 1, 252, 3}, YUV, {255, 0, 128, 1, 64, 255}},
        {"14 bit G, B, R", P414_RGB, 1, 1, {64, 0, 128, 63, 255, 63}, RGBP, {255, 1, 254}},
        {"formula B", YUV, 1, 1, {100, 200, 50}, RGB32, {246, 117, 11, 0, 0, 0, 0, 0}},
        {"grey", Y, 1, 1, {60}, RGB32, {60, 60, 60, 0, 0, 0, 0, 0}},
        {"chroma of a pair", RGB24, 2, 1, {50, 100, 200, 30, 20, 10, 0, 0}, YUY2, {124, 113, 18, 158}},
        {"and of a last pixel alone", RGB24, 1, 1, {50, 100, 200, 0}, YUY2, {124, 92}},
        {"interleaved", YV16, 2, 2, {1, 2, 3, 4, 5, 6, 7, 8}, YUY2, {1, 5, 2, 7, 3, 6, 4, 8}},
        {"an odd width", YV16, 3, 1, {1, 2, 3, 4, 5, 6}, YUY2, {1, 4, 2, 5, 3, 5}},
        {"luma alone", RGB32, 1, 1, {50, 100, 200, 77, 0, 0, 0, 0}, Y, {124}},
        {"integer luma", RGB24, 1, 1, {50, 100, 200, 0}, YUVQ, {124, 91, 175}},
        {"of red", RGB24, 1, 1, {0, 0, 255, 0}, YUVQ, {76, 90, 240}},
        {"shares of red and green", RGB24, 1, 1, {50, 100, 200, 0}, YRGN, {124, 145, 72}},
        {"of white", RGB24, 1, 1, {255, 255, 255, 0}, YRGN, {255, 84, 84}},
    };
    for (const auto& [what, from, width, height, frame, to, expected] : kCases) {
        rkVideoImage source, target;
        Load(source, width, height, from, frame);
        EXPECT_TRUE(target.Convert(source, to, 0, false)) << what;
        EXPECT_EQ(expected, Packed(target)) << what;
    }
}

TEST(Convert, SplitsAndJoinsRowsOfEveryLength) {
    Kernels::ForEachTarget([] {
        int misses = 0;
        for (int width = 1; width <= 200; ++width) {
            rkVideoImage planes, interleaved, again;
            Load(planes, width, 3, RGBP, RandomFrame(RGBP, width, 3));
            ASSERT_TRUE(interleaved.Convert(planes, RGB24, 0, false));
            ASSERT_TRUE(again.Convert(interleaved, RGBP, 0, false));
            for (int i = 0; i < 3 * width; ++i) {
                const int sample = planes.Row(i % 3, 2)[i / 3];
                misses += sample != interleaved.Row(0, 2)[i + 2 - 2 * (i % 3)];  // B, G, R
                misses += sample != again.Row(i % 3, 2)[i / 3];
            }
        }
        EXPECT_EQ(0, misses);
    });
}

TEST(Convert, EveryTagBecomesItselfAndNoneThatIsNone) {
    for (int from = -1; from <= P416_RGB + 1; ++from) {
        const Bytes frame = RandomFrame(from, 5, 3);
        rkVideoImage source, target;
        source.Create(5, 3, from, 16);
        for (const int none : {-1, P416_RGB + 1})
            EXPECT_FALSE(target.Convert(source, none, 0, false)) << from;
        EXPECT_EQ(!frame.empty(), target.Convert(source, from, 0, false)) << from;
        if (frame.empty()) continue;
        source.LoadFrame(frame.data());
        ASSERT_TRUE(target.Convert(source, from, 0, false));
        EXPECT_EQ(Packed(source), Packed(target)) << from;
        const rkVideoImage empty;
        EXPECT_FALSE(target.Convert(target, from, 0, false) || target.Convert(empty, from, 0, false));
        EXPECT_EQ(from, target.ColorSpace()) << "a refusal changes nothing";
    }
}

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
    // Two rows of two pixels, rows of planes 3 apart, of pixels 8; all but the last pixel are black.
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
