#include "video/color_space.h"

#include <gtest/gtest.h>

#include <set>

namespace {

TEST(ColorSpace, FamiliesHoldTheirTagsAndNothingElse) {
    const std::set<int> rgb = {0, 1, 9, 26, 27, 28};
    const std::set<int> deepRgb = {26, 27, 28};
    const std::set<int> yuv = {2, 3, 4, 5, 6, 7, 8, 13, 14, 17, 18, 19, 20, 21, 22, 23, 24, 25};
    const std::set<int> deepYuv = {17, 18, 19, 20, 21, 22, 23, 24, 25};
    for (int tag = -70; tag < 70; ++tag) {
        SCOPED_TRACE(tag);
        EXPECT_EQ(rgb.count(tag) == 1, rkIsRgb(tag));
        EXPECT_EQ(deepRgb.count(tag) == 1, rkIsDeepRgb(tag));
        EXPECT_EQ(yuv.count(tag) == 1, rkIsYuv(tag));
        EXPECT_EQ(deepYuv.count(tag) == 1, rkIsDeepYuv(tag));
    }
}

TEST(ColorSpace, NamesOfRawLayoutsGoBothWays) {
    constexpr struct {
        int tag;
        const wchar_t* name;
    } kNames[] = {{2, L"YUV"},   {3, L"YUY2"},  {4, L"UYVY"},      {5, L"YV12"},      {6, L"IYUV"},
                  {7, L"Y"},     {8, L"YV16"},  {13, L"Y410"},     {17, L"P010"},     {18, L"P014"},
                  {19, L"P016"}, {20, L"P210"}, {21, L"P214"},     {22, L"P216"},     {23, L"P410"},
                  {24, L"P414"}, {25, L"P416"}, {26, L"P410_RGB"}, {27, L"P414_RGB"}, {28, L"P416_RGB"}};
    std::set<int> named;
    for (const auto& c : kNames) {
        EXPECT_STREQ(c.name, rkColorSpaceName(c.tag));
        EXPECT_EQ(c.tag, rkColorSpaceByName(c.name));
        named.insert(c.tag);
    }
    for (int tag = -1; tag < 40; ++tag) {
        if (named.count(tag) == 1) continue;
        EXPECT_STREQ(L"unknown", rkColorSpaceName(tag)) << tag;
    }
    for (const wchar_t* wrong : {L"", L"unknown", L"iyuv", L"IYUV ", L"RGB24", L"VYUY"}) {
        EXPECT_EQ(-1, rkColorSpaceByName(wrong));
    }
}

}  // namespace
