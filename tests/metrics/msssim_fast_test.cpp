#include "metrics/msssim_fast.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "tests/kernels/targets.h"
#include "tests/metrics/flat_windows.h"

namespace Metric {
namespace {

constexpr double kWeights[] = {0.0448, 0.2856, 0.3001, 0.2363, 0.1333};

struct Level {
    int width, height;
    std::vector<float> map;
};

struct Expected {
    float value = 1;
    std::vector<Level> levels;
};

std::vector<float> Half(const std::vector<float>& plane, int width, int height) {
    std::vector<float> half;
    for (int y = 0; y < height / 2; ++y) {
        for (int x = 0; x < width / 2; ++x) {
            const float* square = plane.data() + 2 * y * width + 2 * x;
            half.push_back((((square[0] + square[1]) + square[width]) + square[width + 1]) * 0.25f);
        }
    }
    return half;
}

Expected ByTheDefinition(std::vector<float> first, std::vector<float> second, int width, int height) {
    const float c1 = (((0.01f * 4096) * 0.01f) * 255.0f) * 255.75f;
    const float c2 = (((0.03f * 4096) * 0.03f) * 255.0f) * 255.75f;
    Expected expected;
    for (bool last = false; !last;) {
        const std::size_t level = expected.levels.size();
        last = level == 4 || width / 2 < 8 || height / 2 < 8;
        const std::vector<float> windows = FlatWindows(
            first, second, width, height,
            [=](const WindowSums& sums) { return last ? WholeSsim(sums, c1, c2) : ContrastSsim(sums, c2); });
        double sum = 0;
        for (const float window : windows) sum += double{window};
        const double mean = sum / double{static_cast<float>(width - 7) * static_cast<float>(height - 7)};
        expected.value = expected.value * static_cast<float>(last ? mean : std::pow(mean, kWeights[level]));
        expected.levels.push_back({width, height, WindowMap(windows, width, height)});
        first = Half(first, width, height);
        second = Half(second, width, height);
        width /= 2;
        height /= 2;
    }
    return expected;
}

// The grey of a pixel, level by level from the pixel's own place.
int GreyAt(const std::vector<Level>& levels, int x, int y) {
    double product = 1;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        const auto& [width, height, map] = levels[level];
        x = std::clamp(x, 0, width - 1);
        y = std::clamp(y, 0, height - 1);
        product *= std::pow(double{map[static_cast<std::size_t>(y * width + x)]}, kWeights[level]);
        x /= 2;
        y /= 2;
    }
    return std::isnan(product) ? 0 : static_cast<int>((1 - product) * 255) & 0xFF;
}

TEST(MsssimFast, ScenesByTheDefinition) {
    for (const Scene& scene : Scenes()) {
        SCOPED_TRACE(scene.what);
        const Scene distorted = Distorted(scene);
        const Expected expected =
            ByTheDefinition(scene.Padded(8), distorted.Padded(8), Scene::RoundUp(scene.width, 8),
                            Scene::RoundUp(scene.height, 8));
        ASSERT_FALSE(std::isnan(expected.value));
        const auto first = scene.Image();
        const auto second = TenBitImage(distorted);
        Kernels::ForEachTarget(
            [&] { EXPECT_EQ(expected.value, MeasureOnce<CMSSSIMMetric>(*first, *second)); });
        EXPECT_EQ(1, MeasureOnce<CMSSSIMMetric>(*first, *first));

        Canvas canvas(scene.width, scene.height);
        EXPECT_EQ(expected.value, MeasureOnce<CMSSSIMMetric>(*first, *second, &canvas.picture));
        EXPECT_EQ(0, WrongPixels(canvas, [&](int x, int y) { return GreyAt(expected.levels, x, y); }));
    }
}

TEST(MsssimFast, SameOfBytes) {
    ExpectSameOfBytes<CMSSSIMMetric>();
}

// Flat pictures have contrast and structure 1, so the value is the luminance term of the last level whatever
// the number of levels, here of the greys 20 and 120: (2 * 20 * 120 + C1) / (20^2 + 120^2 + C1) with C1 of
// 6.5025. The painted picture takes it to the last level's weight.
TEST(MsssimFast, LevelsOfFlatPictures) {
    const double luminance = 4806.5025 / 14806.5025;
    const struct {
        int width, height, levels, paintedRows;
    } kCases[] = {
        {8, 8, 1, 1},  // one window, and rows of 1 below it
        {15, 640, 2, 2 * (320 - 7)},
        {64, 64, 4, 8},
        {127, 65, 4, 8 * 2},
        {640, 128, 5, 16},
        {720, 576, 5, 16 * 29},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.width << " by " << c.height);
        const auto first = FlatPicture(c.width, c.height, 20);
        const auto second = FlatPicture(c.width, c.height, 120);
        Canvas canvas(c.width, c.height);
        EXPECT_NEAR(luminance, MeasureOnce<CMSSSIMMetric>(*first, *second), 1e-7);
        EXPECT_NEAR(luminance, MeasureOnce<CMSSSIMMetric>(*first, *second, &canvas.picture), 1e-7);
        const int grey = static_cast<int>((1 - std::pow(luminance, kWeights[c.levels - 1])) * 255);
        EXPECT_EQ(grey, canvas.Pixel(0, 0)[0]);
        EXPECT_EQ(grey, canvas.Pixel(c.width - 1, c.paintedRows - 1)[0]);
        EXPECT_EQ(0, canvas.Pixel(c.width - 1, c.paintedRows)[0]);
        EXPECT_EQ(1, MeasureOnce<CMSSSIMMetric>(*first, *first));
    }
}

// The contrast terms of a picture and its negative are below 0 and have no real power.
TEST(MsssimFast, NegativeIsNotANumber) {
    const auto first = BytePicture(32, 32, [](int x, int y) { return (x + y) % 2 * 200; });
    const auto second = BytePicture(32, 32, [](int x, int y) { return (x + y + 1) % 2 * 200; });
    Canvas canvas(32, 32);
    EXPECT_TRUE(std::isnan(MeasureOnce<CMSSSIMMetric>(*first, *second, &canvas.picture)));
    EXPECT_EQ(std::vector<int>(3, 0), canvas.Pixel(0, 0));
}

}  // namespace
}  // namespace Metric
