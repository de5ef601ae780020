#include "kernels/smallest.h"

#include "tests/kernels/targets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <random>
#include <vector>

namespace Kernels {
namespace {

double MeanOf(std::vector<float> values, int smallest) {
    std::vector<float> scratch(values.size());
    return MeanOfSmallest(values.data(), static_cast<int>(values.size()), smallest, scratch.data());
}

TEST(MeanOfSmallest, ByHand) {
    const struct {
        const char* what;
        std::vector<float> values;
        int smallest;
        double expected;
    } cases[] = {
        {"one of one", {3}, 1, 3},
        {"all", {4, 1, 7}, 3, 4},
        {"copies of the greatest are cut", {2, 5, 2, 2, 9}, 2, 2},
        {"copies with smaller ones", {2, -1, 2, 2, 9, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, -2}, 3, -1 / 3.0},
        {"zeros of both signs", {0.0f, -0.0f, 0.0f, 8}, 2, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ForEachTarget([&] { EXPECT_EQ(c.expected, MeanOf(c.values, c.smallest)); });
    }
}

// Against a sort. Multiples of 2^-20 below 1 have sums that are exact in any order.
TEST(MeanOfSmallest, SameAsSorted) {
    std::mt19937 random(3);
    int index = 0;
    const std::function<float()> kinds[] = {
        [&] { return static_cast<float>(random() % (1u << 20)) * 0x1p-20f; },
        [&] { return static_cast<float>(random() % 7) / 8 - 0.25f; },
        [&] { return random() % 100 == 0 ? 0.5f : 1.0f; },
        [] { return 1.0f; },
        [&] {
            return index++ % 127 == 0 ? 1.0f : static_cast<float>(random() % 64) / 128;
        },  // the samples mislead
        [&] { return index++ % 127 == 0 ? 0.0f : static_cast<float>(random() % 64) / 128 + 0.25f; },
    };
    for (const auto& kind : kinds) {
        for (int count : {1, 15, 17, 1000, 70001}) {
            std::vector<float> values(static_cast<std::size_t>(count));
            index = 0;
            std::generate(values.begin(), values.end(), kind);
            std::vector<float> sorted = values;
            std::sort(sorted.begin(), sorted.end());
            for (int smallest : {1, (count + 1) / 17 + 1, count}) {
                SCOPED_TRACE(testing::Message() << smallest << " of " << count);
                if (smallest > count) continue;
                const double sum = std::accumulate(sorted.begin(), sorted.begin() + smallest, 0.0);
                EXPECT_EQ(sum / smallest, MeanOf(values, smallest));
            }
        }
    }
}

}  // namespace
}  // namespace Kernels
