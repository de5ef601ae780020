#include "kernels/sort.h"

#include "kernels/reference/sort.h"
#include "tests/kernels/targets.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <vector>

namespace Kernels {
namespace {

std::vector<std::uint32_t> Bits(const std::vector<float>& values) {
    std::vector<std::uint32_t> bits;
    for (float value : values) bits.push_back(std::bit_cast<std::uint32_t>(value));
    return bits;
}

// The first and the last value stand for the memory around the array.
TEST(SortAscend, ByHand) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    const struct {
        const char* what;
        std::vector<float> values, expected;
    } cases[] = {
        {"nothing", {9, -9}, {9, -9}},
        {"one", {9, 3, -9}, {9, 3, -9}},
        {"partly equal", {9, 3, 1, 3, -2, 1, 3, -9}, {9, -2, 1, 1, 3, 3, 3, -9}},
        {"signs of zero", {9, 0, -0.0f, 0, -0.0f, -9}, {9, -0.0f, -0.0f, 0, 0, -9}},
        {"no numbers",
         {9, kNan, 1, -kNan, -kInfinity, kInfinity, -9},
         {9, -kNan, -kInfinity, 1, kInfinity, kNan, -9}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ForEachTarget([&] {
            std::vector<float> values = c.values;
            SortAscend(values.data() + 1, static_cast<int>(values.size()) - 2);
            EXPECT_EQ(Bits(c.expected), Bits(values));
        });
    }
}

TEST(SortAscend, SameBitsAsReference) {
    std::mt19937 random(1);
    const struct {
        const char* what;
        std::function<float(int)> value;
    } kinds[] = {
        {"any bits", [&](int) { return std::bit_cast<float>(static_cast<std::uint32_t>(random())); }},
        {"all equal", [](int) { return 1.0f; }},
        {"few values", [&](int) { return static_cast<float>(random() % 3); }},
        {"ascending", [](int i) { return static_cast<float>(i); }},
        {"descending", [](int i) { return static_cast<float>(-i); }},
    };
    for (const auto& kind : kinds) {
        for (const int count : {2, 3, 15, 16, 17, 255, 1000, 70000}) {
            SCOPED_TRACE(testing::Message() << count << " values, " << kind.what);
            std::vector<float> values;
            for (int i = 0; i < count; ++i) values.push_back(kind.value(i));
            std::vector<float> expected = values;
            Reference::SortAscend(expected.data(), count);
            ForEachTarget([&] {
                std::vector<float> sorted = values;
                SortAscend(sorted.data(), count);
                EXPECT_EQ(Bits(expected), Bits(sorted));
            });
        }
    }
}

}  // namespace
}  // namespace Kernels
