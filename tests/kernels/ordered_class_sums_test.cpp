#include "kernels/ordered_class_sums.h"

#include "kernels/reference/ordered_class_sums.h"
#include "tests/kernels/ordered_values.h"
#include "tests/kernels/targets.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace Kernels {
namespace {

// How the pixels of a row are shared out to the classes.
const struct {
    const char* what;
    std::function<int(Random&, int x)> classOf;
} kPatterns[] = {
    {"all mixed", [](Random& random, int) { return static_cast<int>(random() % 3); }},
    {"one class", [](Random&, int) { return 1; }},
    {"areas", [](Random&, int x) { return x / 150 % 3; }},
    {"one class hardly ever",
     [](Random& random, int) { return random() % 200 == 0 ? 2 : static_cast<int>(random() % 2); }},
};

TEST(OrderedClassSums, EveryTargetGivesTheBitsOfTheChains) {
    Random random(1);
    for (const auto& kind : kKinds) {
        for (const auto& pattern : kPatterns) {
            SCOPED_TRACE(testing::Message() << kind.what << ", " << pattern.what);
            for (int exponent = -6; exponent < 32; exponent += 3) {
                const int width = 700 + exponent;
                std::vector<float> values;
                std::vector<std::uint8_t> classes;
                for (int x = 0; x < width; ++x) {
                    values.push_back(kind.value(random));
                    classes.push_back(static_cast<std::uint8_t>(pattern.classOf(random, x)));
                }
                // Sums of different sizes, the third of none at times.
                const float start = std::ldexp(Between(random, 0.97f, 1.03f), exponent);
                const ClassSums before = {start, exponent % 2 == 0 ? start * 16 : -start,
                                          exponent % 4 == 0 ? 0 : start * 1000};
                ClassSums expected = before;
                Reference::AddInOrder(expected, values.data(), 0, classes.data(), 0, width, 1);
                ForEachTarget([&] {
                    ClassSums sums = before;
                    AddInOrder(sums, values.data(), 0, classes.data(), 0, width, 1);
                    for (std::size_t i = 0; i < sums.size(); ++i) ExpectSameBits(expected[i], sums[i]);
                });
            }
        }
    }
}

// From 0 on and through many powers of two, in rows with gaps.
TEST(OrderedClassSums, APicture) {
    constexpr int kWidth = 333, kHeight = 300, kGap = 5;
    Random random(2);
    std::vector<float> values;
    std::vector<std::uint8_t> classes;
    for (int i = 0; i < (kWidth + kGap) * kHeight; ++i) {
        values.push_back(Between(random, 0.6f, 1.0f));
        classes.push_back(static_cast<std::uint8_t>(i / 50 % 3));
    }
    const int stride = (kWidth + kGap) * static_cast<int>(sizeof(float));
    ClassSums expected = {};
    Reference::AddInOrder(expected, values.data(), stride, classes.data(), kWidth + kGap, kWidth, kHeight);
    ForEachTarget([&] {
        ClassSums sums = {};
        AddInOrder(sums, values.data(), stride, classes.data(), kWidth + kGap, kWidth, kHeight);
        EXPECT_EQ(expected, sums);
    });
}

}  // namespace
}  // namespace Kernels
