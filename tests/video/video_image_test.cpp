#include "tests/video/packed_frame.h"
#include "video/color_space.h"
#include "video/layout_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <stdexcept>

namespace {

TEST(RawLayout, BytesOfLinesAndFrames) {
    constexpr std::tuple<const char*, int, int, int, int, int, int> kCases[] = {
        {"three full planes", YUV, 101, 2, 303, 606, 606},
        {"packed 4:2:2", YUY2, 101, 2, 202, 404, 404},
        {"planar 4:2:0", IYUV, 352, 288, 528, 152064, 152064},
        {"odd width is cut", YV12, 5, 3, 7, 21, 21},
        {"one pixel has no chroma", YV12, 1, 1, 1, 1, 1},
        {"one plane", Y, 101, 1, 101, 101, 101},
        {"planar 4:2:2", YV16, 101, 1, 202, 202, 202},
        {"packed 10 bit", Y410, 101, 1, 404, 404, 404},
        {"packed 16 bit", Packed422Deep, 101, 1, 808, 808, 808},
        {"deep 4:2:0, odd width isn't cut", P014, 101, 1, 303, 303, 303},
        {"deep 4:2:2", P216, 101, 1, 404, 404, 404},
        {"deep 4:4:4", P410, 101, 1, 606, 606, 606},
        {"deep RGB", P416_RGB, 101, 1, 606, 606, 606},
        {"no raw file; rows end at 4 bytes", RGB24, 6, 3, 0, 0, 60},
        {"and at 8", RGB32, 5, 3, 0, 0, 72},
        {"planes in memory only", GDIF, 5, 3, 0, 0, 45},
        {"for script readers only", VYUY, 100, 1, 0, 0, 0},
        {"no tag", 29, 100, 1, 0, 0, 0},
        {"below nothing", YUV, -16, -3, 0, 0, 0},
        {"no rows", YUV, 5, 0, 15, 0, 0},
        {"the most that fits", YUY2, INT_MAX / 2, 1, INT_MAX - 1, INT_MAX - 1, INT_MAX - 1},
        {"one more doesn't", YUY2, INT_MAX / 2 + 1, 1, 0, 0, 0},
        {"nor the widest", P416, INT_MAX, 1, 0, 0, 0},
        {"2 GiB less 64 KiB", Y, 65536, 32767, 65536, 2147418112, 2147418112},
        {"2 GiB", Y, 65536, 32768, 65536, 0, 0},
        {"beyond 64 bits of unsigned sizes", P416, INT_MAX / 6, INT_MAX, INT_MAX / 6 * 6, 0, 0},
    };
    for (const auto& [what, colorSpace, width, height, lineBytes, frameBytes, packedBytes] : kCases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(lineBytes, RawLineBytes(colorSpace, width));
        EXPECT_EQ(frameBytes, RawFrameBytes(colorSpace, width, height));
        EXPECT_EQ(packedBytes, PackedFrameBytes(colorSpace, width, height));
    }
}

TEST(ColorSpace, NamesOfRawLayoutsGoBothWays) {
    std::wstring names;
    for (int tag = -1; tag < 40; ++tag) {
        const std::wstring name = rkColorSpaceName(tag);
        EXPECT_EQ(name == L"unknown" ? -1 : tag, rkColorSpaceByName(name.c_str()));
        if (name != L"unknown") names += std::to_wstring(tag) + L" " + name + L", ";
    }
    EXPECT_EQ(
        L"2 YUV, 3 YUY2, 4 UYVY, 5 YV12, 6 IYUV, 7 Y, 8 YV16, 13 Y410, 17 P010, 18 P014, 19 P016, 20 P210, "
        L"21 P214, 22 P216, 23 P410, 24 P414, 25 P416, 26 P410_RGB, 27 P414_RGB, 28 P416_RGB, ",
        names);
    for (const wchar_t* wrong : {L"", L"iyuv", L"IYUV ", L"RGB24", L"VYUY"})
        EXPECT_EQ(-1, rkColorSpaceByName(wrong)) << wrong;
}

TEST(LayoutList, EveryLayoutHasItsTextAndIsFoundAgain) {
    const auto items = [](std::span<const rkLayoutItem> list) {
        std::wstring text;
        int position = 0;
        for (const rkLayoutItem& item : list) {
            EXPECT_EQ(position++, rkLayoutPosition(list, item.colorSpace));
            text += std::to_wstring(item.colorSpace) + L" " + item.text + L", ";
        }
        return text;
    };
    EXPECT_EQ(
        L"6 IYUV (I420), 5 YV12, 2 YUV, 4 UYVY, 7 Y, 3 YUY2 (YUYV), 8 YV16, 17 10 bit 4:2:0 yuv, 18 14 bit "
        L"4:2:0 "
        L"yuv, 19 16 bit 4:2:0 yuv, 20 10 bit 4:2:2 yuv, 21 14 bit 4:2:2 yuv, 22 16 bit 4:2:2 yuv, 23 10 bit "
        L"4:4:4 "
        L"yuv, 24 14 bit 4:4:4 yuv, 25 16 bit 4:4:4 yuv, 26 10 bit 4:4:4 rgb, 27 14 bit 4:4:4 rgb, 28 16 bit "
        L"4:4:4 rgb, ",
        items(rkInternalReaderLayouts()));
    EXPECT_EQ(L"6 IYUV (I420), 5 YV12, 2 YUV, 7 Y, 4 UYVY, 15 VYUY, 3 YUY2 (YUYV), 16 YVYU, ",
              items(rkScriptReaderLayouts()));
    EXPECT_EQ(0, rkLayoutPosition(rkScriptReaderLayouts(), P010)) << "another than those of the list";
}

TEST(VideoImage, Geometry) {
    constexpr std::tuple<const char*, int, int, int, int, std::array<int, 5>> kCases[] = {
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
    for (const auto& [what, w, h, colorSpace, border, expected] : kCases) {
        SCOPED_TRACE(what);
        rkVideoImage image;
        image.SetGeometry(w, h, colorSpace, border);
        EXPECT_EQ(expected, (std::array<int, 5>{image.IsPadded(), image.Width(), image.Height(),
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
    EXPECT_EQ(32 * 32 * 3, std::count(image.Data(), image.Data() + image.Capacity(), 0)) << "zeros";

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
