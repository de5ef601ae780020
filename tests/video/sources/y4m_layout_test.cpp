#include "video/sources/y4m_layout.h"

#include <gtest/gtest.h>

namespace {

Y4mHeader Header(int colorSpace, int sampleBits, int width, int height) {
    Y4mHeader header;
    header.colorSpace = colorSpace;
    header.sampleBits = sampleBits;
    header.width = width;
    header.height = height;
    return header;
}

// Sizes by hand. 5 by 3 has 15 pixels, 6 chroma samples a plane at 4:2:0 and 9 at 4:2:2 when sides are
// rounded up; lines of 7, 10 and 15 bytes at 8 bits when they are cut. In words, a cut chroma row has 5
// bytes.
TEST(Y4mLayout, Candidates) {
    using Candidate = std::array<int, 3>;  // stored bytes, layout handed over, depth shift
    const struct {
        int colorSpace, sampleBits, width, height;
        std::vector<Candidate> candidates;
    } kCases[] = {
        {IYUV, 8, 4, 2, {{12, IYUV, 0}}},
        {IYUV, 8, 4, 3, {{18, IYUV, 0}, {20, YUV, 0}}},
        {IYUV, 8, 1, 1, {{1, IYUV, 0}, {3, YUV, 0}}},
        {YV16, 8, 4, 3, {{24, YV16, 0}}},
        {YUV, 8, 5, 3, {{45, YUV, 0}}},
        {IYUV, 10, 4, 2, {{12, IYUV, 0}, {24, P010, 0}}},
        {IYUV, 12, 5, 3, {{21, IYUV, 0}, {27, YUV, 0}, {50, P414, 2}, {54, P414, 2}}},
        {YV16, 9, 5, 3, {{30, YV16, 0}, {33, YUV, 0}, {60, P410, 1}, {66, P410, 1}}},
        {YV16, 15, 4, 2, {{16, YV16, 0}, {32, P216, 1}}},
        {YUV, 16, 5, 3, {{45, YUV, 0}, {90, P416, 0}}},
        {IYUV, 10, 32767, 32767, {{1610498050, IYUV, 0}}},  // 49150 bytes a line; all others pass 2^31
        {YUV, 8, 0x7FFFFFFF, 1, {}},
    };
    for (const auto& c : kCases) {
        std::vector<Candidate> candidates;
        for (const Y4mLayout& layout : Y4mLayouts(Header(c.colorSpace, c.sampleBits, c.width, c.height))) {
            candidates.push_back({layout.storedBytes, layout.colorSpace, layout.depthShift});
        }
        EXPECT_EQ(c.candidates, candidates) << c.colorSpace << " " << c.width << "x" << c.height;
    }
}

// 3 by 3 pixels: luma, then chroma as stored and as it must be handed over.
TEST(Y4mLayout, UnpacksPictures) {
    using Samples = std::vector<int>;
    const Samples luma = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    const Samples stored420 = {10, 20, 30, 40, 50, 60, 70, 80};
    const Samples full420 = {10, 10, 20, 10, 10, 20, 30, 30, 40, 50, 50, 60, 50, 50, 60, 70, 70, 80};
    const Samples stored422 = {10, 20, 30, 40, 50, 60, 15, 25, 35, 45, 55, 65};
    const Samples full422 = {10, 10, 20, 30, 30, 40, 50, 50, 60, 15, 15, 25, 35, 35, 45, 55, 55, 65};
    const struct {
        int colorSpace, sampleBits;
        std::size_t candidate;
        Samples stored, handedOver;
        int factor;
    } kCases[] = {{IYUV, 8, 1, stored420, full420, 1},
                  {YV16, 8, 1, stored422, full422, 1},
                  {IYUV, 10, 3, stored420, full420, 1},
                  {YV16, 11, 3, stored422, full422, 8},
                  {YUV, 12, 1, full420, full420, 4}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.colorSpace << " " << c.sampleBits);
        const auto bytes = [&](const Samples& chroma, int factor) {
            std::vector<std::uint8_t> all;
            for (const Samples* part : {&luma, &chroma}) {
                for (const int sample : *part) {
                    all.push_back(static_cast<std::uint8_t>(sample * factor));
                    if (c.sampleBits > 8) all.push_back(static_cast<std::uint8_t>(sample * factor >> 8));
                }
            }
            return all;
        };
        const Y4mLayout layout = Y4mLayouts(Header(c.colorSpace, c.sampleBits, 3, 3)).at(c.candidate);
        const auto picture = bytes(c.stored, 1);
        ASSERT_EQ(picture.size(), static_cast<std::size_t>(layout.storedBytes));
        std::vector<std::uint8_t> frame(static_cast<std::size_t>(layout.frameBytes));
        UnpackY4mPicture(layout, picture.data(), frame.data());
        EXPECT_EQ(bytes(c.handedOver, c.factor), frame);
    }
}

// As measured on files of ffmpeg 5.1.9: at 3 pixels a row, 1.5 chroma samples of 2 bytes.
TEST(Y4mLayout, UnpacksRowsThatEndWithinASample) {
    const Y4mLayout layout = Y4mLayouts(Header(IYUV, 10, 3, 3)).at(2);
    std::vector<std::uint8_t> picture(18), expected(18);
    for (std::size_t i = 0; i < 18; i += 2) picture[i] = expected[i] = static_cast<std::uint8_t>(i);
    for (const auto sample : std::initializer_list<std::uint8_t>{10, 30, 50, 70})
        picture.insert(picture.end(), {sample, 1, 99});
    for (const auto sample : std::initializer_list<std::uint8_t>{10, 10, 30, 50, 50, 70}) {
        for (int x = 0; x < 3; ++x) expected.insert(expected.end(), {sample, 1});
    }
    ASSERT_EQ(picture.size(), static_cast<std::size_t>(layout.storedBytes));
    std::vector<std::uint8_t> frame(static_cast<std::size_t>(layout.frameBytes));
    UnpackY4mPicture(layout, picture.data(), frame.data());
    EXPECT_EQ(expected, frame);
}

}  // namespace
