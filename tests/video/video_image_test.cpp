#include "video/video_image.h"

#include "tests/video/packed_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace {

constexpr int kRawLayouts[] = {YUV,  YUY2, UYVY, YV12, IYUV, Y,    YV16, Y410,     P010,     P014,
                               P016, P210, P214, P216, P410, P414, P416, P410_RGB, P414_RGB, P416_RGB};

constexpr struct {
    int width, height;
} kSizes[] = {{1, 1}, {1, 4}, {5, 3}, {5, 8}, {16, 16}, {17, 2}, {48, 16}, {49, 7}};

TEST(VideoImage, Geometry) {
    constexpr struct {
        const char* what;
        int w, h, colorSpace, border;
        bool padded;
        int width, height, stride, roundedBorder;
    } kCases[] = {
        {"aligned", 720, 576, YV12, 0, false, 720, 576, 720, 0},
        {"two columns more", 722, 576, YV12, 0, true, 736, 576, 736, 0},
        {"one row less", 720, 575, RGB24, 0, true, 720, 576, 2160, 0},
        {"four bytes a pixel", 17, 1, RGB32, 0, true, 32, 16, 128, 0},
        {"two bytes a pixel", 17, 1, UYVY, 0, true, 32, 16, 64, 0},
        {"deep tags count as one byte", 17, 1, P416, 0, true, 32, 16, 32, 0},
        {"blocks of 48", 720, 576, Y410, 0, false, 720, 576, 2880, 0},
        {"and a part of one", 721, 576, Y410, 0, true, 768, 576, 3072, 0},
        {"eight bytes a pixel", 16, 16, Packed422Deep, 0, false, 16, 16, 128, 0},
        {"a border alone", 16, 16, Y, 1, true, 32, 32, 32, 8},
        {"a border of 17", 17, 17, YUV, 17, true, 80, 80, 80, 24},
        {"a border of blocks", 48, 16, Y410, 25, true, 144, 80, 576, 32},
        {"nothing", 0, 0, YUV, 0, false, 0, 0, 0, 0},
        {"below nothing", -5, -5, YUV, -5, false, 0, 0, 0, 0},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        rkVideoImage image;
        image.SetGeometry(c.w, c.h, c.colorSpace, c.border);
        EXPECT_EQ(c.padded, image.IsPadded());
        EXPECT_EQ(c.width, image.Width());
        EXPECT_EQ(c.height, image.Height());
        EXPECT_EQ(c.stride, image.Stride());
        EXPECT_EQ(c.roundedBorder, image.Border());
        EXPECT_EQ(c.padded, image.HasPixels());  // nothing else allocates here
    }
}

TEST(VideoImage, BlockGrowsZeroFilledAndNeverShrinks) {
    rkVideoImage image;
    image.Create(32, 32, RGB24, 0);
    EXPECT_EQ(32 * 32 * 3, image.Capacity());
    EXPECT_EQ(32 * 32 * 3, std::count(image.Data(), image.Data() + image.Capacity(), 0));

    image.Data()[0] = 7;
    image.Create(16, 16, Y, 0);
    EXPECT_EQ(32 * 32 * 3, image.Capacity());
    EXPECT_EQ(7, image.Data()[0]);

    image.SetGeometry(64, 64, YUV, 0);  // aligned: allocates nothing, and so nothing may be read
    EXPECT_EQ(32 * 32 * 3, image.Capacity());
    Bytes untouched(64 * 64 * 3, 5);
    image.CopyVisibleTo(untouched.data());
    EXPECT_EQ(Bytes(64 * 64 * 3, 5), untouched);
    rkVideoImage target;
    EXPECT_FALSE(target.Convert(image, YUV, 0, false));
}

TEST(VideoImage, RefusesTwoGibibytesAndStaysUsable) {
    constexpr int kMax = std::numeric_limits<int>::max();
    rkVideoImage image;
    image.Create(16, 16, Y, 0);
    EXPECT_THROW(image.Create(65536, 32768, Y, 0), std::length_error);
    EXPECT_THROW(image.Create(kMax, kMax, P416, kMax), std::length_error);
    EXPECT_THROW(image.Create(kMax, 0, Y, 0), std::length_error);
    EXPECT_THROW(image.Create(16384, 16384, Packed422Deep, 0), std::length_error);
    EXPECT_EQ(16, image.Width());
    image.Create(32, 32, Y, 0);
    EXPECT_TRUE(image.HasPixels());
}

// Offsets and steps of the planes as the table of plane positions has them, by the aligned sizes.
TEST(VideoImage, PaddingRepeatsTheLastPixelAndRow) {
    constexpr struct {
        int colorSpace, planes, pixelBytes, shiftX, shiftY;
    } kFamilies[] = {{RGB24, 1, 3, 0, 0}, {RGB32, 1, 4, 0, 0}, {YUY2, 1, 2, 0, 0}, {UYVY, 1, 2, 0, 0},
                     {Y, 1, 1, 0, 0},     {YUV, 3, 1, 0, 0},   {YRGN, 3, 1, 0, 0}, {YV12, 3, 1, 1, 1},
                     {IYUV, 3, 1, 1, 1},  {YV16, 3, 1, 1, 0}};
    for (const auto& f : kFamilies) {
        for (const auto& size : kSizes) {
            SCOPED_TRACE(testing::Message() << f.colorSpace << ": " << size.width << "x" << size.height);
            rkVideoImage image;
            image.Create(size.width, size.height, f.colorSpace, 0);
            image.LoadFrame(RandomFrame(f.colorSpace, size.width, size.height).data());
            const int luma = image.Stride() * image.Height();
            int misses = 0;
            for (int plane = 0; plane < f.planes; ++plane) {
                const int sx = plane ? f.shiftX : 0, sy = plane ? f.shiftY : 0;
                const int offset = plane == 0 ? 0 : luma + (plane - 1) * (luma >> (sx + sy));
                const int step = image.Stride() >> sx;
                const int lastX = (size.width - 1) >> sx, lastY = (size.height - 1) >> sy;
                for (int y = 0; y < image.Height() >> sy; ++y) {
                    for (int i = 0; i < step; ++i) {
                        const int x = std::min(i / f.pixelBytes, lastX) * f.pixelBytes + i % f.pixelBytes;
                        misses += image.Data()[offset + y * step + i] !=
                                  image.Data()[offset + std::min(y, lastY) * step + x];
                    }
                }
            }
            EXPECT_EQ(0, misses);
        }
    }
}

TEST(VideoImage, FramesGoInAndOut) {
    Bytes layouts(std::begin(kRawLayouts), std::end(kRawLayouts));
    layouts.insert(layouts.end(), {RGB24, RGB32, RGBP, GDIF});
    for (const int colorSpace : layouts) {
        for (const auto& size : kSizes) {
            SCOPED_TRACE(testing::Message() << colorSpace << ": " << size.width << "x" << size.height);
            const Bytes frame = RandomFrame(colorSpace, size.width, size.height);
            rkVideoImage image;
            image.Create(size.width, size.height, colorSpace, 0);
            image.LoadFrame(frame.data());
            EXPECT_EQ(frame.data(), image.Target());

            Bytes copy(frame.size(), 0xAA);
            image.CopyVisibleTo(copy.data());
            rkVideoImage again;
            again.Create(size.width, size.height, colorSpace, 0);
            again.LoadFrame(copy.data());
            EXPECT_TRUE(std::equal(image.Data(), image.Data() + image.Capacity(), again.Data()));

            // Where every byte belongs to a sample the frame itself comes back.
            const bool hasGaps = colorSpace == RGB24 || colorSpace == RGB32 ||
                                 (rkPlaneShapeOf(colorSpace).shiftX == 1 && size.width % 2 == 1);
            if (!hasGaps || rkSampleBits(colorSpace) > 8) {
                EXPECT_EQ(frame, copy);
            }

            Bytes guarded(frame.size() + 32, 0x55);  // bytes without a sample are written too
            image.CopyVisibleTo(guarded.data() + 16);
            EXPECT_TRUE(std::equal(copy.begin(), copy.end(), guarded.begin() + 16));
            EXPECT_EQ(16, std::count(guarded.begin(), guarded.begin() + 16, 0x55));
            EXPECT_EQ(16, std::count(guarded.end() - 16, guarded.end(), 0x55));
        }
    }
}

// 5 by 3, worked by hand: 15 luma bytes, chroma rows of 3 bytes at a step of 2 from 15 and from 18, the frame
// ends at 21.
TEST(VideoImage, ChromaOfAnOddFrame) {
    Bytes frame(21);
    for (std::size_t i = 0; i < frame.size(); ++i) frame[i] = static_cast<std::uint8_t>(i);
    rkVideoImage image;
    image.Create(5, 3, IYUV, 0);
    image.LoadFrame(frame.data());
    const auto row = [&](int plane, int y) { return Bytes(image.Row(plane, y), image.Row(plane, y) + 4); };
    EXPECT_EQ((Bytes{15, 16, 17, 17}), row(1, 0));
    EXPECT_EQ((Bytes{17, 18, 19, 19}), row(1, 1));
    EXPECT_EQ((Bytes{18, 19, 20, 20}), row(2, 0));
    EXPECT_EQ((Bytes{20, 20, 20, 20}), row(2, 1));

    image.Create(5, 3, IYUV, 8);  // 32 by 32 with the border, which is 4 rows and columns in chroma
    EXPECT_EQ(32 * 32 + 4 * 16 + 4, image.Row(1, 0) - image.Data());
}

TEST(VideoImage, FlipReversesVisibleRows) {
    const Bytes frame = {1, 1, 9, 0, 2, 2, 9, 0, 3, 3, 9, 0};  // one pixel a row and the row's end
    rkVideoImage image;
    image.Create(1, 3, RGB24, 0);
    image.LoadFrame(frame.data());
    ASSERT_TRUE(image.FlipVertical());
    const auto at = [&](int x, int y) { return int{image.Data()[y * image.Stride() + 3 * x]}; };
    for (const int x : {0, 15}) {
        EXPECT_EQ(3, at(x, 0));
        EXPECT_EQ(2, at(x, 1));
        EXPECT_EQ(1, at(x, 2));
        EXPECT_EQ(1, at(x, 15));
    }

    image.Create(16, 16, RGB32, 0);
    EXPECT_FALSE(image.FlipVertical());
}

}  // namespace
