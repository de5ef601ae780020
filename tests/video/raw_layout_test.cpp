#include "video/raw_layout.h"

#include "video/color_space.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr int kMaxInt = std::numeric_limits<int>::max();

TEST(RawLayout, LineBytes) {
    constexpr struct {
        const char* what;
        int colorSpace, width, lineBytes;
    } kCases[] = {
        {"three full planes", YUV, 101, 303},
        {"packed 4:2:2", YUY2, 101, 202},
        {"planar 4:2:0", IYUV, 720, 1080},
        {"planar 4:2:0, odd width is cut", YV12, 101, 151},
        {"one plane", Y, 101, 101},
        {"planar 4:2:2", YV16, 101, 202},
        {"packed 10 bit", Y410, 101, 404},
        {"packed 16 bit", Packed422Deep, 101, 808},
        {"deep 4:2:0, odd width isn't cut", P014, 101, 303},
        {"deep 4:2:2", P216, 101, 404},
        {"deep 4:4:4", P410, 101, 606},
        {"deep RGB", P416_RGB, 101, 606},
        {"no raw file of RGB", RGB24, 100, 0},
        {"no raw file of RGB planes", RGBP, 100, 0},
        {"for script readers only", VYUY, 100, 0},
        {"no tag", 29, 100, 0},
        {"no tag", -1, 100, 0},
        {"nothing", YUV, 0, 0},
        {"below nothing", YUV, -16, 0},
        {"the most that fits", YUY2, kMaxInt / 2, kMaxInt - 1},
        {"one more doesn't", YUY2, kMaxInt / 2 + 1, 0},
        {"nor the widest", P416, kMaxInt, 0},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.lineBytes, RawLineBytes(c.colorSpace, c.width));
    }
}

TEST(RawLayout, FrameBytes) {
    constexpr struct {
        const char* what;
        int colorSpace, width, height, rawBytes, packedBytes;
    } kCases[] = {
        {"CIF", IYUV, 352, 288, 152064, 152064},
        {"odd sizes", IYUV, 5, 3, 21, 21},
        {"one pixel has no chroma", YV12, 1, 1, 1, 1},
        {"RGB rows end at 4 bytes", RGB24, 5, 3, 0, 48},
        {"and at 8", RGB32, 5, 3, 0, 72},
        {"planes in memory only", GDIF, 5, 3, 0, 45},
        {"no rows", YUV, 5, 0, 0, 0},
        {"rows below 0", YUV, 5, -3, 0, 0},
        {"2 GiB less 64 KiB", Y, 65536, 32767, 2147418112, 2147418112},
        {"2 GiB", Y, 65536, 32768, 0, 0},
        {"a product beyond 64 bits of unsigned sizes", P416, kMaxInt / 6, kMaxInt, 0, 0},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.rawBytes, RawFrameBytes(c.colorSpace, c.width, c.height));
        EXPECT_EQ(c.packedBytes, PackedFrameBytes(c.colorSpace, c.width, c.height));
    }
}

}  // namespace
