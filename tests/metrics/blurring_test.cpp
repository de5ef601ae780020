#include "metrics/blurring.h"

#include <gtest/gtest.h>

#include "tests/kernels/targets.h"
#include "tests/metrics/pictures.h"
#include "tests/metrics/scenes.h"

namespace Metric {
namespace {

// The definition in one chain of additions.
float Sharpness(const Scene& scene) {
    const std::vector<float> plane = scene.Padded(1);
    const int width = scene.width, inner = (width - 2) * (scene.height - 2);
    const auto at = [&](int pixel) { return plane[static_cast<std::size_t>(pixel)]; };
    float sum = 0;
    for (int y = 1; y < scene.height - 1; ++y)
        for (int i = y * width + 1; i < (y + 1) * width - 1; ++i)
            sum += std::fabs(at(i - 1) - at(i + 1)) + std::fabs(at(i - width) - at(i + width));
    return width > 2 && inner > 0 ? sum / static_cast<float>(inner) : 0;
}

TEST(Blurring, EqualsOneChainOfAdditions) {
    std::vector<Scene> scenes = Scenes();
    for (const auto& [width, height] : {std::pair(1, 1), {2, 9}, {9, 2}, {3, 3}, {4, 203}})
        scenes.push_back({"narrow", width, height, FullNoise});
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(testing::Message() << scene.what << ' ' << scene.width << " by " << scene.height);
        const auto image = scene.Image();
        const float expected = Sharpness(scene);
        Kernels::ForEachTargetAndTeam([&] {
            CBlurringMetric metric(PictureSize(scene.width, scene.height));
            EXPECT_EQ(expected, metric.Measure({image.get()})[0].value);
        });
    }
}

// Ramps of slope s along one axis have g = 2 |s| everywhere inside.
TEST(Blurring, TwoVideos) {
    const auto steep = BytePicture(12, 9, [](int x, int) { return 10 * x; });
    const auto slow = BytePicture(12, 9, [](int, int y) { return 200 - 3 * y; });
    const struct {
        CMetricImage *first, *second;
        float firstValue, secondValue;
        std::vector<int> color;
    } kCases[] = {
        {steep.get(), slow.get(), 20, 6, {0, 0, 42}},  // red, 3 (20 - 6)
        {slow.get(), steep.get(), 6, 20, {0, 42, 0}},  // green
        {slow.get(), slow.get(), 6, 6, {0, 0, 0}},
        {slow.get(), steep.get(), 6, 20, {0, 42, 0}},
    };
    for (const int component : {ComponentY, ComponentU, ComponentV}) {
        SCOPED_TRACE(component);
        CBlurringMetric metric(PictureSize(12, 9, component));
        const auto info = metric.GetResultInfo(true);
        ASSERT_EQ(2u, info.size());
        const auto expect = [&](const std::vector<MetricValue>& results, float first, float second) {
            ASSERT_EQ(2u, results.size());
            EXPECT_EQ(std::pair(info[0].resultId, first), std::pair(results[0].resultId, results[0].value));
            EXPECT_EQ(std::pair(info[1].resultId, second), std::pair(results[1].resultId, results[1].value));
        };
        for (const auto& c : kCases) {
            Canvas canvas(12, 9);
            expect(metric.MeasureAndVisualize({c.first, c.second}, canvas.picture), c.firstValue,
                   c.secondValue);
            EXPECT_EQ(c.color, canvas.Pixel(5, 4));
            EXPECT_EQ(std::vector<int>(3, 0), canvas.Pixel(0, 4)) << "no gradient at the edge";
        }
        expect(metric.GetAverages(true), 38 / 4.0f, 52 / 4.0f);
        ASSERT_EQ(1u, metric.GetAverages(false).size());
        EXPECT_EQ(38 / 4.0f, metric.GetAverages(false)[0].value);
        EXPECT_EQ(1u, metric.GetResultInfo(false).size());
        EXPECT_EQ(std::vector<int>{0}, info[0].files);
        EXPECT_EQ(std::vector<int>{1}, info[1].files);
    }
}

}  // namespace
}  // namespace Metric
