#include "kernels/byte_difference.h"

#include "kernels/reductions.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Kernels {
namespace {

// Against the difference of the same pixels as floats, to the bit; also bottom-up, and where every square is as great
// as can be over more pixels than a 32-bit sum holds.
TEST(SumSquaredDifferences, IsWhatTheFloatPlanesGive) {
    constexpr PlaneSize kHuge[] = {{70001, 3}, {16385, 2}};
    std::vector<PlaneSize> sizes(std::begin(kPlaneSizes), std::end(kPlaneSizes));
    sizes.insert(sizes.end(), std::begin(kHuge), std::end(kHuge));
    for (const PlaneSize& size : sizes) {
        SCOPED_TRACE(testing::Message() << size.width << "x" << size.height);
        const bool isHuge = size.width > 10000;
        TestPlane<float> a = Picture(size.width, size.height, 1), b = Picture(size.width, size.height, 2);
        if (isHuge) {
            a.ForEach([](float& pixel) { pixel = 255; });
            b.ForEach([](float& pixel) { pixel = 0; });
        }
        const double norm =
            NormDiffL2(a.data(), a.stride, b.data(), b.stride, size.width, size.height, AccuracyHigh);

        const auto bytesOf = [](TestPlane<float>& plane) {
            std::vector<std::uint8_t> bytes;
            plane.ForEach([&](float& pixel) { bytes.push_back(static_cast<std::uint8_t>(pixel)); });
            return bytes;
        };
        const std::vector<std::uint8_t> first = bytesOf(a), second = bytesOf(b);
        const std::ptrdiff_t step = size.width;
        const std::ptrdiff_t last = step * (size.height - 1);
        ForEachTargetAndTeam([&] {
            const auto sum = [&](const ByteRows& x, const ByteRows& y) {
                return std::sqrt(static_cast<double>(SumSquaredDifferences(x, y, size.width, size.height)));
            };
            EXPECT_EQ(norm, sum({first.data(), step}, {second.data(), step}));
            EXPECT_EQ(norm, sum({first.data() + last, -step}, {second.data() + last, -step}));
        });
    }
    EXPECT_EQ(0u, SumSquaredDifferences({nullptr, 0}, {nullptr, 0}, 0, 0));
}

}  // namespace
}  // namespace Kernels
