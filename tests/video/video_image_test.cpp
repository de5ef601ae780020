#include "tests/video/packed_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <stdexcept>

namespace {

TEST(VideoImage, Geometry) {
    constexpr struct {
        const char* what;
        int w, h, colorSpace, border;
        std::array<int, 5> expected;  // padded, width, height, bytes a row, border
    } kCases[] = {
        {"aligned", 720, 576, YV12, 0, {0, 720, 576, 720, 0}},
        {"two columns more", 722, 576, YV12, 0, {1, 736, 576, 736, 0}},
        {"one row less", 720, 575, RGB24, 0, {1, 720, 576, 2160, 0}},
        {"four bytes a pixel", 17, 1, RGB32, 0, {1, 32, 16, 128, 0}},
        {"two bytes a pixel", 17, 1, UYVY, 0, {1, 32, 16, 64, 0}},
        {"deep tags count as one byte", 17, 1, P416, 0, {1, 32, 16, 32, 0}},
        {"blocks of 48", 720, 576, Y410, 0, {0, 720, 576, 2880, 0}},
        {"and a part of one", 721, 576, Y410, 0, {1, 768, 576, 3072, 0}},
        {"eight bytes a pixel", 16, 16, Packed422Deep, 0, {0, 16, 16, 128, 0}},
        {"a border alone", 16, 16, Y, 1, {1, 32, 32, 32, 8}},
        {"a border of 17", 17, 17, YUV, 17, {1, 80, 80, 80, 24}},
        {"a border of blocks", 48, 16, Y410, 25, {1, 144, 80, 576, 32}},
        {"below nothing", -5, -5, YUV, -5, {0, 0, 0, 0, 0}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        rkVideoImage image;
        image.SetGeometry(c.w, c.h, c.colorSpace, c.border);
        EXPECT_EQ(c.expected, (std::array<int, 5>{image.IsPadded(), image.Width(), image.Height(),
                                                  image.Stride(), image.Border()}));
        EXPECT_EQ(image.IsPadded(), image.HasPixels()) << "nothing else allocates here";
    }
}

TEST(VideoImage, RefusesTwoGibibytesAndStaysUsable) {
    rkVideoImage image, target;
    image.Create(16, 16, Y, 0);
    EXPECT_THROW(image.Create(65536, 32768, Y, 0), std::length_error);
    EXPECT_THROW(image.Create(INT_MAX, INT_MAX, P416, INT_MAX), std::length_error);
    EXPECT_THROW(image.Create(INT_MAX, 0, Y, 0), std::length_error);
    EXPECT_THROW(image.Create(16384, 16384, Packed422Deep, 0), std::length_error);
    EXPECT_EQ(16, image.Width());
    image.Create(32, 32, RGB24, 0);
    EXPECT_EQ(32 * 32 * 3, std::count(image.Data(), image.Data() + image.Capacity(), 0))
        << "filled with zeros";

    image.SetGeometry(64, 64, YUV, 0);  // aligned: allocates nothing, and so nothing may be read
    EXPECT_EQ(Bytes(64 * 64 * 3, 0xAA), Packed(image));
    EXPECT_FALSE(target.Convert(image, YUV, 0, false));
}

TEST(VideoImage, FramesGoInAndOut) {
    for (int colorSpace = RGB24; colorSpace <= P416_RGB; ++colorSpace) {
        for (const auto& [width, height] : kSizes) {
            const Bytes frame = RandomFrame(colorSpace, width, height);
            if (frame.empty()) continue;
            SCOPED_TRACE(testing::Message() << colorSpace << ": " << width << "x" << height);
            rkVideoImage image, again;
            Load(image, width, height, colorSpace, frame);
            const Bytes copy = Packed(image);
            Load(again, width, height, colorSpace, copy);
            EXPECT_TRUE(std::equal(image.Data(), image.Data() + image.Capacity(), again.Data()));

            Bytes guarded(frame.size() + 32, 0x55);  // bytes without a sample are written too
            image.CopyVisibleTo(guarded.data() + 16);
            EXPECT_TRUE(std::equal(copy.begin(), copy.end(), guarded.begin() + 16));
            EXPECT_EQ(16, std::count(guarded.begin(), guarded.begin() + 16, 0x55));
            EXPECT_EQ(16, std::count(guarded.end() - 16, guarded.end(), 0x55));
        }
    }
}

TEST(VideoImage, FlipReversesVisibleRows) {
    rkVideoImage image;
    Load(image, 1, 3, RGB24, {1, 1, 9, 0, 2, 2, 9, 0, 3, 3, 9, 0});  // one pixel a row and the row's end
    ASSERT_TRUE(image.FlipVertical());
    for (const int x : {0, 15}) {
        int y = 0;
        for (const int expected : {3, 2, 1, 1})
            EXPECT_EQ(expected, image.Data()[y++ * image.Stride() + 3 * x]);
        EXPECT_EQ(1, image.Data()[15 * image.Stride() + 3 * x]);
    }
    image.Create(16, 16, RGB32, 0);
    EXPECT_FALSE(image.FlipVertical());
}

}  // namespace
