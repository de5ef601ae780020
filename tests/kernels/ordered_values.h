#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>

// Values whose sums show the order of their additions.

namespace Kernels {

inline constexpr float kInfinity = std::numeric_limits<float>::infinity();

inline void ExpectSameBits(float expected, float actual) {
    EXPECT_EQ(std::bit_cast<std::uint32_t>(expected), std::bit_cast<std::uint32_t>(actual));
}

inline void ExpectSameBits(double expected, double actual) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(expected), std::bit_cast<std::uint64_t>(actual));
}

using Random = std::mt19937;

inline float Between(Random& random, float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random);
}

/// Kinds of values that the additions round in different ways. The sums start at powers of two from 2^-6 to
/// 2^31, a bit off, so that a kind meets units from far below its values to above them.
struct ValueKind {
    const char* what;
    std::function<float(Random&)> value;
};
inline const ValueKind kKinds[] = {
    {"near 1", [](Random& random) { return Between(random, 0.9f, 1.0f); }},
    {"of both signs", [](Random& random) { return Between(random, -1, 1); }},
    {"half ways up to a unit of 2^8",
     [](Random& random) {
         return std::ldexp(Between(random, 0, 1) < 0.5f ? 1.0f : 3.0f, static_cast<int>(random() % 16) - 8);
     }},
    {"of all sizes",
     [](Random& random) { return std::ldexp(Between(random, -1, 1), static_cast<int>(random() % 60) - 30); }},
    {"tiny", [](Random& random) { return Between(random, 0, 1e-30f); }},
    {"great now and then", [](Random& random) { return random() % 300 == 0 ? 1e6f : Between(random, 0, 1); }},
    {"leaving the range and coming back", [](Random& random) { return Between(random, -64, 64); }},
    {"not finite now and then",
     [](Random& random) { return random() % 900 == 0 ? kInfinity : Between(random, 0, 1); }},
};

}  // namespace Kernels
