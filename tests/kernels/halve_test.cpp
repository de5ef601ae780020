#include "kernels/halve.h"

#include "kernels/reference/halve.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

#include <vector>

namespace Kernels {
namespace {

constexpr float kBig = 16777216;  // 2^24: adding 1 changes nothing

// 5 by 5 pixels to 2 by 2: the last column and row drop out. The last square keeps its 1 in the given order
// only.
TEST(Halve, ByHand) {
    const TestPlane<float> source(5, {1, 2, 3,    4,     9,  //
                                      5, 6, 7,    8,     9,  //
                                      0, 1, kBig, -kBig, 9,  //
                                      1, 0, 1,    0,     9,  //
                                      9, 9, 9,    9,     9});
    TestPlane<float> target(2, 2);
    Halve(source.data(), source.stride, target.data(), target.stride, 2, 2);
    EXPECT_TRUE(target == TestPlane<float>(2, {3.5f, 5.5f, 0.5f, 0.25f}));
}

TEST(Halve, GivesTheBitsOfTheReference) {
    for (const auto& [width, height] : kPlaneSizes) {
        SCOPED_TRACE(width);
        const TestPlane<float> source = PixelsOfAllSizes(2 * width, 2 * height, 1);
        TestPlane<float> expected(width, height);
        Reference::Halve(source.data(), source.stride, expected.data(), expected.stride, width, height);
        ForEachTarget([&, columns = width, rows = height] {
            TestPlane<float> actual(columns, rows);
            Halve(source.data(), source.stride, actual.data(), actual.stride, columns, rows);
            EXPECT_TRUE(expected == actual);
        });
    }
}

TEST(Halve, OfBytes) {
    for (const auto& [width, height] : kPlaneSizes) {
        SCOPED_TRACE(width);
        TestPlane<float> source = Picture(2 * width, 2 * height, 1);
        TestPlane<std::uint8_t> bytes(2 * width, 2 * height);
        for (int y = 0; y < 2 * height; ++y)
            for (int x = 0; x < 2 * width; ++x)
                Row(bytes.data(), bytes.stride, y)[x] =
                    static_cast<std::uint8_t>(Row(source.data(), source.stride, y)[x]);
        TestPlane<float> expected(width, height);
        Reference::Halve(source.data(), source.stride, expected.data(), expected.stride, width, height);
        ForEachTarget([&, columns = width, rows = height] {
            TestPlane<float> actual(columns, rows);
            HalveBytes(bytes.data(), bytes.stride, actual.data(), actual.stride, columns, rows);
            EXPECT_TRUE(expected == actual);
        });
    }
}

}  // namespace
}  // namespace Kernels
