#include "kernels/sample_difference.h"

#include "kernels/reductions.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <vector>

namespace Kernels {
namespace {

template <class Sample>
void ExpectWhatFloatPlanesGive(const PlaneSize& size, bool isGreatest) {
    std::mt19937 random(1);
    const auto greatest = static_cast<Sample>(-1);
    const auto count = static_cast<std::size_t>(size.width * size.height);
    std::vector<Sample> first(count, greatest), second(count, Sample{0});
    if (!isGreatest)
        for (std::size_t i = 0; i < count; ++i) {
            first[i] = static_cast<Sample>(random());
            second[i] = static_cast<Sample>(random());
        }
    const std::vector<float> a(first.begin(), first.end()), b(second.begin(), second.end());
    const int stride = size.width * static_cast<int>(sizeof(float));
    const double norm = NormDiffL2(a.data(), stride, b.data(), stride, size.width, size.height, AccuracyHigh);

    const std::ptrdiff_t step = size.width * static_cast<std::ptrdiff_t>(sizeof(Sample));
    const std::ptrdiff_t last = step * (size.height - 1);
    const auto* x = reinterpret_cast<const std::uint8_t*>(first.data());
    const auto* y = reinterpret_cast<const std::uint8_t*>(second.data());
    ForEachTargetAndTeam([&] {
        const auto root = [&](const SampleRows& p, const SampleRows& q) {
            return std::sqrt(
                static_cast<double>(SumSquaredDifferences(p, q, sizeof(Sample), size.width, size.height)));
        };
        EXPECT_EQ(norm, root({x, step}, {y, step}));
        EXPECT_EQ(norm, root({x + last, -step}, {y + last, -step})) << "bottom-up";
    });
}

// To the bit; in long rows also with the greatest squares, of which a 32-bit sum holds few.
TEST(SumSquaredDifferences, IsWhatTheFloatPlanesGive) {
    constexpr PlaneSize kLong[] = {{70001, 3}, {16385, 2}};
    for (const bool isGreatest : {false, true}) {
        std::vector<PlaneSize> sizes(std::begin(kLong), std::end(kLong));
        if (!isGreatest) sizes.insert(sizes.end(), std::begin(kPlaneSizes), std::end(kPlaneSizes));
        for (const PlaneSize& size : sizes) {
            SCOPED_TRACE(testing::Message() << size.width << "x" << size.height);
            ExpectWhatFloatPlanesGive<std::uint8_t>(size, isGreatest);
            ExpectWhatFloatPlanesGive<std::uint16_t>(size, isGreatest);
        }
    }
    EXPECT_EQ(0u, SumSquaredDifferences({nullptr, 0}, {nullptr, 0}, 1, 0, 0));
}

}  // namespace
}  // namespace Kernels
