#include "kernels/reductions.h"

#include "kernels/reference/reductions.h"
#include "tests/kernels/targets.h"
#include "tests/kernels/test_plane.h"

#include <gtest/gtest.h>

#include <limits>

namespace Kernels {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

TEST(Reductions, ByHand) {
    const TestPlane<float> a(2, {1, 2, 3, 10});
    const TestPlane<float> b(2, {1, 5, 3, 6});
    EXPECT_EQ(5, NormDiffL2(a.data(), a.stride, b.data(), b.stride, 2, 2, AccuracyHigh));  // 3^2 + 4^2
    EXPECT_EQ(4, Mean(a.data(), a.stride, 2, 2, AccuracyHigh));
    EXPECT_EQ(10, Max(a.data(), a.stride, 2, 2));
    EXPECT_EQ(0, Mean(a.data(), a.stride, 2, 0, AccuracyHigh));
    EXPECT_EQ(0, NormDiffL2(a.data(), a.stride, b.data(), b.stride, 0, 2, AccuracyHigh));
}

// A float sum of so many would be off in the third digit.
TEST(Reductions, MillionsOfPixelsKeepTheirDigits) {
    TestPlane<float> plane(2000, 2100);
    plane.ForEach([](float& pixel) { pixel = 0.1f; });
    EXPECT_NEAR(double{0.1f}, Mean(plane.data(), plane.stride, 2000, 2100, AccuracyHigh), 1e-12);
}

TEST(Reductions, MaxOfUnusualPixels) {
    const struct {
        const char* what;
        TestPlane<float> plane;
        float expected;
    } cases[] = {
        {"a NaN is passed over", {3, {kNan, -2, kNan, kNan, -1, -3}}, -1},
        {"a vector of NaN",
         {17,
          {kNan, kNan, kNan, kNan, kNan, kNan, kNan, kNan, kNan, kNan, kNan, kNan, kNan, kNan, kNan, kNan,
           4}},
         4},
        {"infinite", {2, {1, kInfinity}}, kInfinity},
        {"nothing but NaN", {1, std::vector{kNan}}, -kInfinity},
        {"zeros", {2, {-0.0f, -0.0f}}, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ForEachTarget([&] {
            const float greatest = Max(c.plane.data(), c.plane.stride, c.plane.width, c.plane.height);
            EXPECT_EQ(c.expected, greatest);
            EXPECT_EQ(std::signbit(c.expected), std::signbit(greatest));
        });
    }
}

TEST(Reductions, SameBitsAsReference) {
    for (unsigned seed = 0; seed < 5; ++seed) {
        for (const auto& [width, height] : kPlaneSizes) {
            SCOPED_TRACE(testing::Message() << width << " by " << height << ", seed " << seed);
            const TestPlane<float> a = PixelsOfAllSizes(width, height, 2 * seed);
            const TestPlane<float> b = PixelsOfAllSizes(width, height, 2 * seed + 1);
            const auto values = [&, w = width, h = height](auto norm, auto mean, auto max) {
                return std::array<double, 3>{norm(a.data(), a.stride, b.data(), b.stride, w, h, AccuracyHigh),
                                             mean(a.data(), a.stride, w, h, AccuracyHigh),
                                             max(a.data(), a.stride, w, h)};
            };
            const auto expected = values(Reference::NormDiffL2, Reference::Mean, Reference::Max);
            ForEachTargetAndTeam([&] { EXPECT_EQ(expected, values(NormDiffL2, Mean, Max)); });
        }
    }
}

// More rows than are summed at once.
TEST(Reductions, HighPlane) {
    const TestPlane<float> plane = PixelsOfAllSizes(17, 5000, 1);
    EXPECT_EQ(Reference::Mean(plane.data(), plane.stride, 17, 5000, AccuracyHigh),
              Mean(plane.data(), plane.stride, 17, 5000, AccuracyHigh));
}

}  // namespace
}  // namespace Kernels
