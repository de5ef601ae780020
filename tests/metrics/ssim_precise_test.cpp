#include "metrics/ssim_precise.h"

#include <gtest/gtest.h>

#include "tests/kernels/targets.h"
#include "tests/metrics/gauss_windows.h"

namespace Metric {
namespace {

// A window's sums of squares, up to 65000, are added in float with errors of up to some 22 units of 2^-24:
// 0.03 if they are independent, which a denominator of at least C2 = 58.7 makes 0.0005 at a flat pixel. Their
// mean is smaller.
constexpr double kPixelTolerance = 5e-4;
constexpr double kFrameTolerance = 1e-5;

TEST(SsimPrecise, ScenesByTheDefinition) {
    for (const Scene& scene : SmallScenes()) {
        SCOPED_TRACE(scene.what);
        const int width = Scene::RoundUp(scene.width, 8);
        const int height = Scene::RoundUp(scene.height, 8);
        const auto doubles = [](const std::vector<float>& plane) {
            return Doubles(plane.begin(), plane.end());
        };
        const GaussTerms terms = TermsOf(doubles(scene.Padded(8)), doubles(Distorted(scene).Padded(8)), width,
                                         height, Outside::Nearest);
        const Doubles expected = Product(terms.luminance, terms.contrastStructure);

        const PicturePair pair(scene);
        Probe<CSSIMMetricIpp> metric(PictureSize(scene.width, scene.height));
        Canvas canvas(scene.width, scene.height);
        const float value = metric.MeasureAndVisualize(pair.Images(), canvas.picture)[0].value;
        EXPECT_NEAR(MeanOf(expected), value, kFrameTolerance);
        const float* const map = metric.GetMap(ComponentY);
        double greatestError = 0;
        for (std::size_t i = 0; i < expected.size(); ++i)
            greatestError = std::max(greatestError, std::abs(expected[i] - double{map[i]}));
        EXPECT_LT(greatestError, kPixelTolerance);
        EXPECT_EQ(0, WrongPixels(canvas, [&](int x, int y) {
                      return static_cast<int>(255 - map[y * width + x] * 255) & 0xFF;
                  }));

        Kernels::ForEachTargetAndTeam(
            [&] { EXPECT_EQ(value, MeasureOnce<CSSIMMetricIpp>(*pair.first, *pair.second)); });
        EXPECT_EQ(1, MeasureOnce<CSSIMMetricIpp>(*pair.second, *pair.second));
    }
}

// Flat pictures of levels a and b have the value (2 a b + C1) / (a^2 + b^2 + C1) with C1 = 6.5025, at the
// border too. The variances of the brighter ones are of squares near 15000, so off by 0.01 of C2 = 58.5.
TEST(SsimPrecise, FlatPictures) {
    const struct {
        int firstLevel, secondLevel;
        double expected, tolerance;
        int grey;  // (1 - expected) * 255, cut
    } kCases[] = {
        {0, 0, 1, 0, 0},
        {255, 255, 1, 0, 0},
        {0, 5, 6.5025 / 31.5025, 1e-6, 202},
        {5, 10, 106.5025 / 131.5025, 1e-6, 48},
        {100, 120, 24006.5025 / 24406.5025, 2e-4, 4},
        {20, 120, 4806.5025 / 14806.5025, 2e-4, 172},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.firstLevel << " and " << c.secondLevel);
        const auto first = FlatPicture(20, 12, c.firstLevel);
        const auto second = FlatPicture(20, 12, c.secondLevel);
        Canvas canvas(20, 12);
        EXPECT_NEAR(c.expected, MeasureOnce<CSSIMMetricIpp>(*first, *second, &canvas.picture), c.tolerance);
        EXPECT_EQ(0, WrongPixels(canvas, [&](int, int) { return c.grey; }));
    }
}

}  // namespace
}  // namespace Metric
