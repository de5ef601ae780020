#include "metrics/msssim_precise.h"

#include <gtest/gtest.h>

#include "tests/kernels/targets.h"
#include "tests/metrics/gauss_windows.h"

namespace Metric {
namespace {

constexpr double kWeights[] = {0.0448, 0.2856, 0.3001, 0.2363, 0.1333};

Doubles Half(const Doubles& plane, int width, int height) {
    Doubles half;
    for (int y = 0; y < height / 2; ++y) {
        for (int x = 0; x < width / 2; ++x) {
            const double* square = plane.data() + 2 * y * width + 2 * x;
            half.push_back((square[0] + square[1] + square[width] + square[width + 1]) / 4);
        }
    }
    return half;
}

double ByTheDefinition(Doubles first, Doubles second, int width, int height) {
    double product = 1;
    for (int level = 0;; ++level) {
        const GaussTerms terms = TermsOf(first, second, width, height, Outside::Black);
        if (level == 4 || width == 1 || height == 1)
            return product * MeanOf(Product(terms.luminance, terms.contrastStructure));
        product *= std::pow(MeanOf(terms.contrastStructure), kWeights[level]);
        first = Half(first, width, height);
        second = Half(second, width, height);
        width /= 2;
        height /= 2;
    }
}

// The tolerance is that of means over windows added in float, as in the test of "SSIM (precise)".
TEST(MsssimPrecise, ScenesByTheDefinition) {
    for (const Scene& scene : SmallScenes()) {
        SCOPED_TRACE(scene.what);
        const std::vector<float> first = scene.Padded(8);
        const std::vector<float> second = Distorted(scene).Padded(8);
        const double expected =
            ByTheDefinition({first.begin(), first.end()}, {second.begin(), second.end()},
                            Scene::RoundUp(scene.width, 8), Scene::RoundUp(scene.height, 8));
        const PicturePair pair(scene);
        const float value = MeasureOnce<CMSSSIMMetricIpp>(*pair.first, *pair.second);
        EXPECT_NEAR(expected, value, 1e-5);
        Kernels::ForEachTargetAndTeam(
            [&] { EXPECT_EQ(value, MeasureOnce<CMSSSIMMetricIpp>(*pair.first, *pair.second)); });
        EXPECT_EQ(1, MeasureOnce<CMSSSIMMetricIpp>(*pair.second, *pair.second));
    }
}

/// The part of the windows' weight that lies inside a line of `length` pixels, at each of them.
Doubles WeightInside(int length) {
    const Doubles weights = GaussWeights();
    Doubles inside(static_cast<std::size_t>(length));
    for (int x = 0; x < length; ++x)
        for (int i = 0; i < length; ++i)
            if (std::abs(x - i) <= 5)
                inside[static_cast<std::size_t>(x)] += weights[static_cast<std::size_t>(x - i + 5)];
    return inside;
}

// Flat pictures of levels a and b on black stay flat when halved. Where a part w of a window's weight lies
// inside, the means are w a and w b, the variances v a^2 and v b^2 and the covariance v a b, with v = w
// (1 - w). Dark levels keep the roundings small.
TEST(MsssimPrecise, FlatPicturesOnBlack) {
    const double a = 5, b = 10, c1 = 6.5025, c2 = 58.5225;
    const struct {
        int width, height, levels;
    } kCases[] = {{8, 8, 4}, {16, 8, 4}, {16, 16, 5}, {24, 40, 5}, {104, 136, 5}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.width << " by " << c.height);
        double expected = 1;
        std::vector<double> products(static_cast<std::size_t>(c.width * c.height), 1);  // as painted
        for (int level = 0; level < c.levels; ++level) {
            const int width = c.width >> level;
            const int height = c.height >> level;
            const bool last = level + 1 == c.levels;
            Doubles map;
            for (const double row : WeightInside(height)) {
                for (const double column : WeightInside(width)) {
                    const double w = row * column;
                    const double v = w - w * w;
                    const double luminance = (2 * w * w * a * b + c1) / (w * w * (a * a + b * b) + c1);
                    map.push_back((2 * v * a * b + c2) / (v * (a * a + b * b) + c2) * (last ? luminance : 1));
                }
            }
            expected *= std::pow(MeanOf(map), last ? 1 : kWeights[level]);
            for (int y = 0; y < c.height; ++y)
                for (int x = 0; x < c.width; ++x)
                    products[static_cast<std::size_t>(y * c.width + x)] *=
                        std::pow(map[static_cast<std::size_t>(std::min(y >> level, height - 1) * width +
                                                              std::min(x >> level, width - 1))],
                                 kWeights[level]);
        }

        Canvas canvas(c.width, c.height);
        const auto first = FlatPicture(c.width, c.height, 5);
        const auto second = FlatPicture(c.width, c.height, 10);
        EXPECT_NEAR(expected, MeasureOnce<CMSSSIMMetricIpp>(*first, *second, &canvas.picture), 1e-6);
        EXPECT_EQ(
            0, WrongPixels(canvas, [&](int x, int y) {
                return static_cast<int>((1 - products[static_cast<std::size_t>(y * c.width + x)]) * 255);
            }));
    }
}

// The contrast of a picture and its negative is below 0 and has no real power.
TEST(MsssimPrecise, NegativeIsNotANumber) {
    const auto first = BytePicture(32, 32, [](int x, int y) { return (x + y) % 2 * 200; });
    const auto second = BytePicture(32, 32, [](int x, int y) { return (x + y + 1) % 2 * 200; });
    EXPECT_TRUE(std::isnan(MeasureOnce<CMSSSIMMetricIpp>(*first, *second)));
}

}  // namespace
}  // namespace Metric
