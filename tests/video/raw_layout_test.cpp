#include "video/raw_layout.h"

#include <gtest/gtest.h>

#include <climits>

#include "video/color_space.h"
#include "video/layout_list.h"

namespace {

TEST(RawLayout, BytesOfLinesAndFrames) {
    constexpr struct {
        const char* what;
        int colorSpace, width, height, lineBytes, frameBytes, packedBytes;
    } kCases[] = {
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
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.lineBytes, RawLineBytes(c.colorSpace, c.width));
        EXPECT_EQ(c.frameBytes, RawFrameBytes(c.colorSpace, c.width, c.height));
        EXPECT_EQ(c.packedBytes, PackedFrameBytes(c.colorSpace, c.width, c.height));
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

}  // namespace
