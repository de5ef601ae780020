#include "video/sources/y4m_header.h"

#include <gtest/gtest.h>

#include <array>

namespace {

TEST(Y4mHeader, Parameters) {
    const struct {
        const char* text;
        int colorSpace, sampleBits;
    } kCases[] = {{" W720 H576 F25:1 Ip A1:1 C420jpeg", IYUV, 8},
                  {" H576 W720", IYUV, 8},
                  {" W720 H576 C420paldv It Ib I?", IYUV, 8},
                  {" W720 H576 C420p10 XYSCSS=420P10", IYUV, 10},
                  {" W720 H576 C422p12", YV16, 12},
                  {" W720 H576 C444p16", YUV, 16},
                  {" W720 H576 C420p17 Fx A", IYUV, 8},
                  {" W720 H576 C420p10x", IYUV, 8}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.text);
        const auto header = ParseY4mParameters(c.text);
        ASSERT_TRUE(header);
        EXPECT_EQ(c.colorSpace, header->colorSpace);
        EXPECT_EQ(c.sampleBits, header->sampleBits);
        EXPECT_EQ(720, header->width);
        EXPECT_EQ(576, header->height);
    }
}

TEST(Y4mHeader, RefusedParameters) {
    for (const char* text : {"",
                             " H2",
                             " W4",
                             "W4 H2",
                             " W4  H2",
                             " W4 H2 ",
                             " W4 H2\r",
                             " W4H2",
                             " W4 H2 w5",
                             " W0 H2",
                             " W4 H-2",
                             " W H2",
                             " W4x H2",
                             " W4294967300 H2",
                             " W4 H2 C411",
                             " W4 H2 C444alpha",
                             " W4 H2 Cmono",
                             " W4 H2 C41",
                             " W4 H2 C",
                             " W4 H2 Im",
                             " W4 H2 Ipt",
                             " W4 H2 I"}) {
        EXPECT_FALSE(ParseY4mParameters(text)) << text;
    }
}

TEST(Y4mHeader, WhatOnlyDescribes) {
    const struct {
        const char* text;
        std::array<int, 5> numbers;  // rate, aspect, interlacing
        std::wstring comment;
    } kCases[] = {{" W4 H2", {25, 1, 1, 1, 0}, L""},
                  {" W4 H2 F30000:1001 A10:11 It Xa Xb\xFF", {30000, 1001, 10, 11, 1}, L"b\u00FF"},
                  {" W4 H2 F0:0 A0:1 Ib", {25, 1, 1, 1, 2}, L""},
                  {" W4 H2 F50 A4:-3 Ip", {50, 0, 1, 1, 0}, L""},
                  {" W4 H2 F99999999999:1 A1:99999999999", {25, 1, 1, 1, 0}, L""}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.text);
        const Y4mHeader header = ParseY4mParameters(c.text).value();
        EXPECT_EQ(c.numbers, (std::array{header.rateNumerator, header.rateDenominator, header.aspectNumerator,
                                         header.aspectDenominator, header.interlacing}));
        EXPECT_EQ(c.comment, header.comment);
    }
    EXPECT_EQ(std::wstring(89, L'c'), ParseY4mParameters(" W4 H2 X" + std::string(200, 'c'))->comment);
}

}  // namespace
