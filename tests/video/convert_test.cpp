#include "video/video_image.h"

#include "tests/kernels/targets.h"
#include "tests/video/packed_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>

namespace {

using Pixel = std::array<int, 3>;

constexpr struct {
    int width, height;
} kSizes[] = {{1, 1}, {2, 2}, {5, 3}, {16, 16}, {17, 2}, {31, 5}, {48, 16}, {49, 7}};

// A frame as its byte offsets tell it, read pixel by pixel. An index past the end means the last byte or
// sample.
struct Frame {
    const Bytes& bytes;
    int colorSpace, w, h;

    int Byte(int i) const { return bytes[std::min(static_cast<std::size_t>(i), bytes.size() - 1)]; }
    int Sample(int i) const {
        i = std::min(i, static_cast<int>(bytes.size() / 2) - 1);
        return (Byte(2 * i) | Byte(2 * i + 1) << 8) >> (colorSpace % 3 == 2   ? 2
                                                        : colorSpace % 3 == 0 ? 6
                                                                              : 8);
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
        switch (x % 6) {
            case 0:
                return {hi(1), Byte(b), lo(2)};
            case 1:
                return {Byte(b + 4), Byte(b), lo(2)};
            case 2:
                return {lo(6), hi(5), Byte(b + 8)};
            case 3:
                return {hi(9), hi(5), Byte(b + 8)};
            case 4:
                return {Byte(b + 12), lo(10), hi(13)};
            default:
                return {lo(14), lo(10), hi(13)};
        }
    }

    Pixel At(int x, int y) const {
        const int i = y * w + x, wh = w * h;
        const int i420 = y / 2 * (w / 2) + x / 2, i422 = y * (w / 2) + x / 2;
        switch (colorSpace) {
            case YUV:
                return {Byte(i), Byte(wh + i), Byte(2 * wh + i)};
            case YUY2:
                return Interleaved422(x, y, 0, 1);
            case UYVY:
                return Interleaved422(x, y, 1, 0);
            case YV12:
                return {Byte(i), Byte(wh + wh / 4 + i420), Byte(wh + i420)};
            case IYUV:
                return {Byte(i), Byte(wh + i420), Byte(wh + wh / 4 + i420)};
            case Y:
                return {Byte(i), 0, 0};
            case YV16:
                return {Byte(i), Byte(wh + i422), Byte(wh + wh / 2 + i422)};
            case Y410:
                return Block410(x, y);
            case P010:
            case P014:
            case P016:
                return {Sample(i), Sample(wh + i420), Sample(wh + wh / 4 + i420)};
            case P210:
            case P214:
            case P216:
                return {Sample(i), Sample(wh + i422), Sample(wh + wh / 2 + i422)};
            case P410:
            case P414:
            case P416:
                return {Sample(i), Sample(wh + i), Sample(2 * wh + i)};
            default:  // G, B, R in the file
                return {Sample(2 * wh + i), Sample(i), Sample(wh + i)};
        }
    }
};

// Visible pixels of a target with three planes that differ from `expected(x, y)`.
template <typename Expected>
int MissedPlanarPixels(const rkVideoImage& image, const Expected& expected) {
    int misses = 0;
    for (int y = 0; y < image.VisibleHeight(); ++y) {
        for (int x = 0; x < image.VisibleWidth(); ++x) {
            const Pixel seen = {image.Row(0, y)[x], image.Row(1, y)[x], image.Row(2, y)[x]};
            Pixel wanted = expected(x, y);
            for (int& sample : wanted) sample &= 255;
            misses += seen != wanted;
        }
    }
    return misses;
}

TEST(Convert, EveryLayoutToPlanesAtAwkwardSizes) {
    for (int colorSpace = YUV; colorSpace <= P416_RGB; ++colorSpace) {
        if (RawLineBytes(colorSpace, 1) == 0 || colorSpace == Packed422Deep) continue;
        for (const auto& size : kSizes) {
            for (const int border : {0, 8}) {
                SCOPED_TRACE(testing::Message() << colorSpace << ": " << size.width << "x" << size.height
                                                << " border " << border);
                const Bytes bytes = RandomFrame(colorSpace, size.width, size.height);
                rkVideoImage source, target;
                source.Create(size.width, size.height, colorSpace, border);
                source.LoadFrame(bytes.data());
                ASSERT_TRUE(target.Convert(source, rkIsDeepRgb(colorSpace) ? RGBP : YUV, 8 - border, false));
                const Frame frame = {bytes, colorSpace, size.width, size.height};
                EXPECT_EQ(0, MissedPlanarPixels(target, [&](int x, int y) { return frame.At(x, y); }));
                const std::uint8_t* lastRow = target.Row(2, size.height - 1);
                EXPECT_EQ(lastRow[size.width - 1], lastRow[target.Width() - target.Border() - 1])
                    << "padding";
            }
        }
    }
}

Pixel BgrOf(const Pixel& yuv) {
    const double u = yuv[1] - 128, v = yuv[2] - 128;
    const auto byte = [](double value) {
        return value < 1 ? 0 : value >= 255 ? 255 : static_cast<int>(value);
    };
    return {byte(u * 2.032 + 0.5 + yuv[0]), byte((0.5 - u * 0.395) - v * 0.581 + yuv[0]),
            byte(v * 1.14 + 0.5 + yuv[0])};
}

// In 4:2:0 the last block of an odd side covers the pixel before the last too, with its own chroma.
TEST(Convert, YuvToRgb24AtAwkwardSizes) {
    for (const int colorSpace : {YUV, YUY2, YV12, IYUV}) {
        for (const auto& size : kSizes) {
            SCOPED_TRACE(testing::Message() << colorSpace << ": " << size.width << "x" << size.height);
            const Bytes bytes = RandomFrame(colorSpace, size.width, size.height);
            rkVideoImage source, target;
            source.Create(size.width, size.height, colorSpace, 0);
            source.LoadFrame(bytes.data());
            ASSERT_TRUE(target.Convert(source, RGB24, 0, false));
            const Frame frame = {bytes, colorSpace, size.width, size.height};
            int misses = 0;
            for (int y = 0; y < size.height; ++y) {
                for (int x = 0; x < size.width; ++x) {
                    const bool blocks = colorSpace == YV12 || colorSpace == IYUV;
                    const int chromaX = blocks && size.width % 2 && x == size.width - 2 ? x + 1 : x;
                    const int chromaY = blocks && size.height % 2 && y == size.height - 2 ? y + 1 : y;
                    Pixel yuv = frame.At(chromaX, chromaY);
                    yuv[0] = frame.At(x, y)[0];
                    const std::uint8_t* bgr = target.Row(0, y) + 3 * x;
                    misses += BgrOf(yuv) != Pixel{bgr[0], bgr[1], bgr[2]};
                }
            }
            EXPECT_EQ(0, misses);
        }
    }
}

// Packed frames by hand; chroma of formula sums by a Python program that rounds to single precision at each
// step.
TEST(Convert, WorkedFrames) {
    const struct {
        const char* what;
        int source, width, height;
        Bytes frame;
        int target;
        Bytes expected;
    } kCases[] = {
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
        {"dropped", RGB32, 2, 1, {1, 2, 3, 4, 5, 6, 7, 8}, RGB24, {1, 2, 3, 5, 6, 7, 0, 0}},
        {"and added", RGB24, 2, 1, {1, 2, 3, 5, 6, 7, 9, 9}, RGB32, {1, 2, 3, 0, 5, 6, 7, 0}},
        {"planes R, G, B", RGB24, 2, 1, {1, 2, 3, 5, 6, 7, 9, 9}, RGBP, {3, 7, 2, 6, 1, 5}},
        {"and back", RGBP, 2, 1, {3, 7, 2, 6, 1, 5}, RGB24, {1, 2, 3, 5, 6, 7, 0, 0}},
        {"differences modulo 256", RGB24, 1, 1, {10, 200, 30, 0}, GDIF, {200, 86, 66}},
        {"and sums", GDIF, 1, 1, {200, 86, 66}, RGB24, {10, 200, 30, 0}},
        {"10 bit white and almost black",
         P410,
         2,
         1,
         {255, 3, 3, 0, 0, 2, 4, 0, 0, 1, 252, 3},
         YUV,
         {255, 0, 128, 1, 64, 255}},
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
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        rkVideoImage source, target;
        source.Create(c.width, c.height, c.source, 0);
        source.LoadFrame(c.frame.data());
        ASSERT_TRUE(target.Convert(source, c.target, 0, false));
        Bytes seen(target.PackedFrameBytes());
        target.CopyVisibleTo(seen.data());
        EXPECT_EQ(c.expected, seen);
    }
}

TEST(Convert, SplitsAndJoinsRowsOfEveryLength) {
    Kernels::ForEachTarget([] {
        int misses = 0;
        for (int width = 1; width <= 200; ++width) {
            rkVideoImage planes, interleaved, again;
            planes.Create(width, 3, RGBP, 0);
            planes.LoadFrame(RandomFrame(RGBP, width, 3).data());
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

TEST(Convert, OnlyTheseAndEqualTagsHaveAConversion) {
    const std::map<int, std::set<int>> sources = {
        {YUV,
         {RGB24, RGB32, YUY2, UYVY, YV12, IYUV, Y, YV16, Y410, P010, P014, P016, P210, P214, P216, P410, P414,
          P416}},
        {RGB24, {RGB32, YUV, YUY2, YV12, IYUV, RGBP, GDIF}},
        {RGBP, {RGB24, P410_RGB, P414_RGB, P416_RGB}},
        {RGB32, {RGB24, YUV, Y}},
        {YUY2, {RGB24, YV16}},
        {Y, {RGB32}},
        {GDIF, {RGB24}},
        {YUVQ, {RGB24}},
        {YRGN, {RGB24}},
    };
    for (int from = -1; from <= P416_RGB + 1; ++from) {
        rkVideoImage source;
        source.Create(5, 3, from, 0);
        for (int to = -1; to <= P416_RGB + 1; ++to) {
            const bool isLayout = rkPlaneShapeOf(from).planes > 0;
            const auto entry = sources.find(to);
            const bool expected =
                from == to ? isLayout : entry != sources.end() && entry->second.count(from) == 1;
            rkVideoImage target;
            EXPECT_EQ(expected, target.Convert(source, to, 0, false)) << from << " to " << to;
        }
    }
}

TEST(Convert, CopiesTheSameLayout) {
    for (int colorSpace = RGB24; colorSpace <= P416_RGB; ++colorSpace) {
        if (PackedFrameBytes(colorSpace, 5, 3) == 0) continue;
        const Bytes frame = RandomFrame(colorSpace, 5, 3);
        rkVideoImage source, target;
        source.Create(5, 3, colorSpace, 16);
        source.LoadFrame(frame.data());
        ASSERT_TRUE(target.Convert(source, colorSpace, 0, false));
        Bytes wanted(frame.size()), seen(frame.size());
        source.CopyVisibleTo(wanted.data());
        target.CopyVisibleTo(seen.data());
        EXPECT_EQ(wanted, seen) << colorSpace;
    }
}

TEST(Convert, TargetIsKeptForTheSameTagAndSizeAlone) {
    const Bytes frame(16 * 16 * 3), smaller(16 * 15 * 3);
    rkVideoImage source, image;
    source.Create(16, 16, YUV, 0);
    image.Create(16, 16, YUV, 0);
    image.LoadFrame(frame.data());
    ASSERT_TRUE(image.Convert(source, YUV, 0, false));
    EXPECT_EQ(frame.data(), image.Target());
    ASSERT_TRUE(image.Convert(source, RGB24, 0, false));
    EXPECT_EQ(nullptr, image.Target());

    image.Create(16, 15, YUV, 0);
    image.LoadFrame(smaller.data());
    ASSERT_TRUE(image.Convert(source, YUV, 0, false));
    EXPECT_EQ(nullptr, image.Target());
}

TEST(Convert, RefusesItselfAndNothing) {
    rkVideoImage empty, image;
    image.Create(16, 16, YUV, 0);
    EXPECT_FALSE(image.Convert(image, YUV, 0, false));
    EXPECT_FALSE(image.Convert(image, RGB24, 0, false));
    EXPECT_FALSE(image.Convert(empty, YUV, 0, false));
    EXPECT_EQ(YUV, image.ColorSpace());
    EXPECT_EQ(16, image.Width());
}

}  // namespace
