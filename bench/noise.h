#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>

/// Fills `count` samples of `Sample`, unsigned integers, with noise of their lowest `bits` bits.
template <class Sample>
void FillWithNoise(Sample* samples, std::size_t count, unsigned seed, int bits = 8 * int{sizeof(Sample)}) {
    std::mt19937_64 random(seed);
    constexpr std::size_t kAtOnce = sizeof(std::uint64_t) / sizeof(Sample);
    const std::uint64_t mask = ~std::uint64_t{0} / static_cast<Sample>(-1) * ((std::uint64_t{1} << bits) - 1);
    for (std::size_t i = 0; i < count; i += kAtOnce) {
        const std::uint64_t some = random() & mask;
        std::memcpy(samples + i, &some, (count - i < kAtOnce ? count - i : kAtOnce) * sizeof(Sample));
    }
}
