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
    const int width = scene.width;
    float sum = 0;
    for (int y = 1; y < scene.height - 1; ++y) {
        for (int i = y * width + 1; i < (y + 1) * width - 1; ++i) {
            const auto at = [&](int pixel) { return plane[static_cast<std::size_t>(pixel)]; };
            sum += std::fabs(at(i - 1) - at(i + 1)) + std::fabs(at(i - width) - at(i + width));
        }
    }
    return sum / static_cast<float>((width - 2) * (scene.height - 2));
}

TEST(Blurring, EqualsOneChainOfAdditions) {
    std::vector<Scene> scenes = Scenes();
    scenes.push_back({"one inner pixel", 3, 3, [](int x, int y) { return Noise(x, y, 256); }});
    scenes.push_back({"tall", 4, 203, [](int x, int y) { return Noise(x, y, 256); }});
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(scene.what);
        const auto image = scene.Image();
        const float expected = Sharpness(scene);
        Kernels::ForEachTargetAndTeam([&] {
            CBlurringMetric metric(PictureSize(scene.width, scene.height));
            EXPECT_EQ(expected, metric.Measure({image.get()})[0].value);
        });
    }
}

TEST(Blurring, PicturesWithoutAnInnerPixel) {
    for (const auto& [width, height] : {std::pair(1, 1), {2, 9}, {9, 2}}) {
        const Scene noise = {"narrow", width, height, [](int x, int y) { return Noise(x, y, 256); }};
        CBlurringMetric metric(PictureSize(width, height));
        EXPECT_EQ(0, metric.Measure({noise.Image().get()})[0].value);
    }
}

// Ramps of slope s along one axis have g = 2 |s| everywhere inside.
TEST(Blurring, TwoVideos) {
    const auto steep = BytePicture(12, 9, [](int x, int) { return 10 * x; });
    const auto slow = BytePicture(12, 9, [](int, int y) { return 200 - 3 * y; });
    for (int component : {ComponentY, ComponentU, ComponentV}) {
        SCOPED_TRACE(component);
        CBlurringMetric metric(PictureSize(12, 9, component));
        const std::vector<int> ids = metric.GetResultIds();
        ASSERT_EQ(2u, ids.size());
        EXPECT_EQ(ids[0] + 1, ids[1]);

        const auto expect = [&](const std::vector<MetricValue>& results, float first, float second) {
            ASSERT_EQ(2u, results.size());
            EXPECT_EQ(ids[0], results[0].resultId);
            EXPECT_EQ(first, results[0].value);
            EXPECT_EQ(ids[1], results[1].resultId);
            EXPECT_EQ(second, results[1].value);
        };
        Canvas canvas(12, 9);
        expect(metric.MeasureAndVisualize({steep.get(), slow.get()}, canvas.picture), 20, 6);
        EXPECT_EQ((std::vector<int>{0, 0, 42}), canvas.Pixel(5, 4)) << "red, 3 (20 - 6)";
        EXPECT_EQ((std::vector<int>{0, 0, 0}), canvas.Pixel(0, 4)) << "no gradient at the edge";
        expect(metric.MeasureAndVisualize({slow.get(), steep.get()}, canvas.picture), 6, 20);
        EXPECT_EQ((std::vector<int>{0, 42, 0}), canvas.Pixel(5, 4)) << "green";
        expect(metric.MeasureAndVisualize({slow.get(), slow.get()}, canvas.picture), 6, 6);
        EXPECT_EQ((std::vector<int>{0, 0, 0}), canvas.Pixel(5, 4));
        expect(metric.MeasureAndVisualize({slow.get(), steep.get()}, canvas.picture), 6, 20);
        expect(metric.GetAverages(true), 38 / 4.0f, 52 / 4.0f);
        ASSERT_EQ(1u, metric.GetAverages(false).size());
        EXPECT_EQ(38 / 4.0f, metric.GetAverages(false)[0].value);
    }
}

TEST(Blurring, ResultsByVisualization) {
    CBlurringMetric metric(PictureSize(8, 8));
    EXPECT_EQ(1, metric.GetInputCount(false));
    EXPECT_EQ(2, metric.GetInputCount(true));
    ASSERT_EQ(1u, metric.GetResultInfo(false).size());
    const auto info = metric.GetResultInfo(true);
    ASSERT_EQ(2u, info.size());
    EXPECT_EQ(std::vector<int>{0}, info[0].files);
    EXPECT_EQ(std::vector<int>{1}, info[1].files);
}

}  // namespace
}  // namespace Metric
