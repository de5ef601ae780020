#include <gtest/gtest.h>

#include "kernels/reference/flat_ssim.h"
#include "kernels/reference/gauss_ssim.h"
#include "metrics/msssim_fast.h"
#include "metrics/ssim_fast.h"
#include "metrics/ssim_precise.h"
#include "tests/metrics/ssim_frames.h"

namespace Metric {
namespace {

int GreyOf(float similarity) {
    return static_cast<int>(255 - similarity * 255) & 0xFF;
}

// One value a window, at its right column; the windows' sum is a float alone, a double with a picture.
TEST(SsimFast, ScenesByTheDefinition) {
    const double peaks = 255.0f * 255.75f;
    const auto c1 = static_cast<float>(peaks * 0.4096), c2 = static_cast<float>(peaks * 3.6864);
    for (const Scene& scene : Scenes()) {
        SCOPED_TRACE(scene.what);
        const PicturePair pair(scene);
        const std::vector<float> map =
            MapOf(pair.firstPlane, pair.secondPlane, pair.width,
                  [=](const auto& planes) { Kernels::Reference::FlatSSIM(planes, c1, c2, nullptr); });
        const auto at = [&](int x, int y) { return map[static_cast<std::size_t>(y * pair.width + x)]; };
        float sum = 0;
        double wideSum = 0;
        for (int y = 0; y < pair.height - 7; ++y) {
            for (int x = 7; x < pair.width; ++x) {
                sum += at(x, y);
                wideSum += double{at(x, y)};
            }
        }
        const float count = static_cast<float>(pair.width - 7) * static_cast<float>(pair.height - 7);

        Kernels::ForEachTarget(
            [&] { EXPECT_EQ(sum / count, MeasureOnce<CSSIMMetric>(*pair.first, *pair.second)); });
        EXPECT_EQ(1, MeasureOnce<CSSIMMetric>(*pair.first, *pair.first));
        Canvas canvas(scene.width, scene.height);
        EXPECT_EQ(static_cast<float>(wideSum / double{count}),
                  MeasureOnce<CSSIMMetric>(*pair.first, *pair.second, &canvas.picture));
        EXPECT_EQ(0, canvas.WrongPixels([&](int x, int y) { return GreyOf(at(x, y)); }));
    }
}

TEST(SsimFast, SameOfBytes) {
    for (const Scene& scene : ByteScenes()) ExpectSameOfBytes<CSSIMMetric>(scene);
}

TEST(SsimPrecise, ScenesByTheDefinition) {
    for (const Scene& scene : SmallScenes()) {
        SCOPED_TRACE(scene.what);
        const PicturePair pair(scene);
        double mean = 0;
        const std::vector<float> map =
            MapOf(pair.firstPlane, pair.secondPlane, pair.width, [&](const auto& planes) {
                mean =
                    Kernels::Reference::GaussSSIM(planes, Kernels::BorderReplicate, 0.0001f * 255 * 255.75f,
                                                  0.0009f * 255 * 255.75f, nullptr);
            });
        const float expected = static_cast<float>(mean);
        Probe<CSSIMMetricIpp> metric(PictureSize(scene.width, scene.height));
        Canvas canvas(scene.width, scene.height);
        EXPECT_EQ(expected, metric.MeasureAndVisualize(pair.Images(), canvas.picture)[0].value);
        EXPECT_TRUE(std::equal(map.begin(), map.end(), metric.GetMap(ComponentY)));
        EXPECT_EQ(0, canvas.WrongPixels([&](int x, int y) {
            return GreyOf(map[static_cast<std::size_t>(y * pair.width + x)]);
        }));
        Kernels::ForEachTargetAndTeam(
            [&] { EXPECT_EQ(expected, MeasureOnce<CSSIMMetricIpp>(*pair.first, *pair.second)); });
        EXPECT_EQ(1, MeasureOnce<CSSIMMetricIpp>(*pair.second, *pair.second));
    }
}

// Flat pictures of levels a and b have the value (2 a b + C1) / (a^2 + b^2 + C1), C1 = 0.0001 peak peak =
// 6.5025, and equal ones exactly 1. Fast: 153 windows are added with an error of half a unit each, 2^-24 of
// the sum; to a double without. Precise: the variances of the brighter pictures are of squares near 15000, so
// off by 0.01 of C2 = 58.5. In levels contrast and structure are 1, and the last one has the luminance.
TEST(Ssim, FlatPictures) {
    constexpr struct {
        int firstLevel, secondLevel;
        double expected, precisely;
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
        const auto first = FlatPicture(20, 12, c.firstLevel), second = FlatPicture(20, 12, c.secondLevel);
        Canvas fast(20, 12), precise(20, 12);
        const double unit = c.expected == 1 ? 0 : 1.2e-7;
        EXPECT_NEAR(c.expected, MeasureOnce<CSSIMMetric>(*first, *second), 153 * unit / 2);
        EXPECT_NEAR(c.expected, MeasureOnce<CSSIMMetric>(*first, *second, &fast.picture), 2 * unit);
        EXPECT_NEAR(c.expected, MeasureOnce<CMSSSIMMetric>(*first, *second), 2 * unit);
        EXPECT_NEAR(c.expected, MeasureOnce<CSSIMMetricIpp>(*first, *second, &precise.picture), c.precisely);
        // 16 rows: below row 8 there is no window's top.
        EXPECT_EQ(0, fast.WrongPixels([&](int, int y) { return y < 9 ? c.grey : 0; }));
        EXPECT_EQ(0, precise.WrongPixels([&](int, int) { return c.grey; }));
    }
}

}  // namespace
}  // namespace Metric
