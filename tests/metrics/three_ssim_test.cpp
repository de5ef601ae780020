#include "metrics/three_ssim.h"

#include <gtest/gtest.h>

#include "kernels/reference/sobel.h"
#include "metrics/ssim_precise.h"
#include "tests/kernels/targets.h"
#include "tests/metrics/pictures.h"
#include "tests/metrics/scenes.h"

namespace Metric {
namespace {

std::vector<float> Gradients(const std::vector<float>& plane, int width) {
    std::vector<float> gradients(plane.size());
    const int stride = width * static_cast<int>(sizeof(float));
    Kernels::Reference::SobelSquares(plane.data(), stride, gradients.data(), stride, width,
                                     static_cast<int>(plane.size()) / width);
    for (float& gradient : gradients) gradient = std::sqrt(gradient);
    return gradients;
}

/// 0 smooth, 1 texture, 2 edge.
std::vector<std::size_t> Segments(const std::vector<float>& first, const std::vector<float>& second) {
    const double greatest = std::max(*std::max_element(first.begin(), first.end()),
                                     *std::max_element(second.begin(), second.end()));
    const auto edge = static_cast<float>(greatest * 0.12), texture = static_cast<float>(greatest * 0.06);
    std::vector<std::size_t> segments;
    for (std::size_t i = 0; i < first.size(); ++i)
        segments.push_back(first[i] > edge || second[i] > edge ? 2 : first[i] >= texture ? 1 : 0);
    return segments;
}

float WeighedMeans(const std::vector<std::size_t>& segments, const float* map) {
    float sums[3] = {}, counts[3] = {};
    for (const std::size_t segment : segments) {
        sums[segment] += *map++;
        ++counts[segment];
    }
    const auto mean = [&](int segment) { return counts[segment] == 0 ? 1 : sums[segment] / counts[segment]; };
    return mean(2) * 0.7f + mean(0) * 0.15f + mean(1) * 0.15f;
}

TEST(ThreeSsim, ScenesByTheDefinition) {
    for (const Scene& scene : SmallScenes()) {
        SCOPED_TRACE(scene.what);
        const PicturePair pair(scene);
        const std::vector<std::size_t> segments =
            Segments(Gradients(pair.firstPlane, pair.width), Gradients(pair.secondPlane, pair.width));
        Probe<CSSIMMetricIpp> precise(PictureSize(scene.width, scene.height));
        Canvas canvas(scene.width, scene.height);
        precise.MeasureAndVisualize(pair.Images(), canvas.picture);
        const float* const map = precise.GetMap(ComponentY);
        const float expected = WeighedMeans(segments, map);

        EXPECT_EQ(expected, MeasureOnce<C3SSIMMetricIpp>(*pair.first, *pair.second, &canvas.picture));
        int wrong = 0;
        for (int y = 0; y < scene.height; ++y) {
            for (int x = 0; x < scene.width; ++x) {
                const int i = y * pair.width + x;
                std::vector<int> color(3);
                color[segments[static_cast<std::size_t>(i)]] = static_cast<int>(255 - map[i] * 255) & 0xFF;
                wrong += canvas.Pixel(x, y) != color;
            }
        }
        EXPECT_EQ(0, wrong);

        Kernels::ForEachTargetAndTeam(
            [&] { EXPECT_EQ(expected, MeasureOnce<C3SSIMMetricIpp>(*pair.first, *pair.second)); });
        EXPECT_EQ(0.7f + 0.15f + 0.15f, MeasureOnce<C3SSIMMetricIpp>(*pair.second, *pair.second));
    }
}

// Flat pictures of dark levels a and b have (2 a b + C1) / (a^2 + b^2 + C1), C1 = 6.5025, on the edges that
// the rim is and on the smooth rest, and no texture, which counts as 1. Black ones are all texture, with a
// greatest gradient of 0.
TEST(ThreeSsim, FlatPictures) {
    const auto value = [](int first, int second) {
        return MeasureOnce<C3SSIMMetricIpp>(*FlatPicture(24, 16, first), *FlatPicture(24, 16, second));
    };
    EXPECT_NEAR(0.85 * 106.5025 / 131.5025 + 0.15, value(5, 10), 1e-6);
    EXPECT_NEAR(0.85 * 6.5025 / 31.5025 + 0.15, value(0, 5), 1e-6);
    EXPECT_EQ(0.7f + 0.15f + 0.15f, value(0, 0));
}

// Columns of one level each: up to 250 and down to 100 by 25 a column, a step, and down to 0. On the columns
// of 250, which meet black above, lies the greatest gradient, 4 * 250, so the thresholds are 120 and 60. A
// step of s has 4 s.
TEST(ThreeSsim, BoundariesOfSegments) {
    const auto columns = [](int step) {
        return BytePicture(64, 24, [=](int x, int) {
            const int slopes = std::min(25 * x, 250 - 25 * std::clamp(x - 13, 0, 6));
            return x < 40 ? slopes : std::max(0, 100 + step - 25 * std::max(0, x - 45));
        });
    };
    const struct {
        int firstStep, secondStep, segment;
    } kCases[] = {{31, 0, 2}, {30, 0, 1}, {15, 0, 1},  {14, 0, 0},
                  {0, 31, 2}, {0, 30, 0}, {14, 30, 0}, {15, 31, 2}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.firstStep << " and " << c.secondStep);
        Canvas canvas(64, 24);
        MeasureOnce<C3SSIMMetricIpp>(*columns(c.firstStep), *columns(c.secondStep), &canvas.picture);
        for (const int x : {39, 40})
            for (int segment = 0; segment < 3; ++segment)
                EXPECT_EQ(segment == c.segment, canvas.Pixel(x, 12)[static_cast<std::size_t>(segment)] != 0)
                    << x;
    }
}

}  // namespace
}  // namespace Metric
