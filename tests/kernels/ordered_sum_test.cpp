#include "kernels/ordered_sum.h"

#include "kernels/reference/ordered_sum.h"
#include "tests/kernels/ordered_values.h"
#include "tests/kernels/targets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace Kernels {
namespace {

TEST(OrderedSum, EveryTargetGivesTheBitsOfTheChain) {
    Random random(1);
    for (const auto& kind : kKinds) {
        SCOPED_TRACE(kind.what);
        for (int exponent = -6; exponent < 32; ++exponent) {
            std::vector<float> values(static_cast<std::size_t>(600 + exponent));
            for (float& value : values) value = kind.value(random);
            const float start = std::ldexp(Between(random, 0.97f, 1.03f), exponent);
            const int width = static_cast<int>(values.size());
            for (const float from : {start, -start, 0.0f}) {
                const float chain = Reference::OrderedSum(from, values.data(), 0, width, 1);
                const double wideChain = Reference::OrderedSum(double{from}, values.data(), 0, width, 1);
                ForEachTarget([&] {
                    ExpectSameBits(chain, OrderedSum(from, values.data(), 0, width, 1));
                    ExpectSameBits(wideChain, OrderedSum(double{from}, values.data(), 0, width, 1));
                });
            }
        }
    }
}

// 1/4 many times to a float: from 2^22 on the additions change nothing, so the sum stands still there. The
// rows have a gap, and are shorter than a vector, as long as one, or longer than a run.
TEST(OrderedSum, RowsOfAPlane) {
    for (const int width : {1, 3, 16, 257, 1000}) {
        SCOPED_TRACE(width);
        const int height = 40;
        const int rowFloats = width + 5;
        std::vector<float> plane(static_cast<std::size_t>(rowFloats * height), kInfinity);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) plane[static_cast<std::size_t>(y * rowFloats + x)] = 0.25f;
        const int stride = rowFloats * static_cast<int>(sizeof(float));
        const float below = 4194304 - 100;
        const auto count = static_cast<float>(width * height);
        ForEachTarget([&] {
            EXPECT_EQ(count / 4, OrderedSum(0.0f, plane.data(), stride, width, height));
            EXPECT_EQ(std::min(below + count / 4, 4194304.0f),
                      OrderedSum(below, plane.data(), stride, width, height));
        });
    }
}

}  // namespace
}  // namespace Kernels
