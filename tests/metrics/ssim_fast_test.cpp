#include "metrics/ssim_fast.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tests/kernels/targets.h"
#include "tests/metrics/flat_windows.h"

namespace Metric {
namespace {

TEST(SsimFast, ScenesByTheDefinition) {
    const float peaks = 255.0f * 255.75f;
    const auto c1 = static_cast<float>(double{peaks} * 0.4096);
    const auto c2 = static_cast<float>(double{peaks} * 3.6864);
    for (const Scene& scene : Scenes()) {
        SCOPED_TRACE(scene.what);
        const int width = Scene::RoundUp(scene.width, 8);
        const int height = Scene::RoundUp(scene.height, 8);
        const Scene distorted = Distorted(scene);
        const std::vector<float> windows =
            FlatWindows(scene.Padded(8), distorted.Padded(8), width, height,
                        [=](const WindowSums& sums) { return WholeSsim(sums, c1, c2); });
        float sum = 0;
        double wideSum = 0;
        for (const float window : windows) {
            sum += window;
            wideSum += double{window};
        }
        const float count = static_cast<float>(width - 7) * static_cast<float>(height - 7);

        const auto first = scene.Image();
        const auto second = TenBitImage(distorted);
        Kernels::ForEachTarget([&] { EXPECT_EQ(sum / count, MeasureOnce<CSSIMMetric>(*first, *second)); });
        EXPECT_EQ(1, MeasureOnce<CSSIMMetric>(*first, *first));

        Canvas canvas(scene.width, scene.height);
        EXPECT_EQ(static_cast<float>(wideSum / double{count}),
                  MeasureOnce<CSSIMMetric>(*first, *second, &canvas.picture));
        const std::vector<float> map = WindowMap(windows, width, height);
        EXPECT_EQ(0, WrongPixels(canvas, [&](int x, int y) {
                      return static_cast<int>(255 - map[static_cast<std::size_t>(y * width + x)] * 255) &
                             0xFF;
                  }));
    }
}

TEST(SsimFast, SameOfBytes) {
    ExpectSameOfBytes<CSSIMMetric>();
}

// Sums of so many samples are rounded, so their order counts.
TEST(SsimFast, SameOfBytesThatAreTallerThanFloatsCanSum) {
    const Scene scene = {"", 8, 65800, [](int x, int y) { return 200 + Noise(x, y, 56); }};
    ByteFrame first(scene), second(Distorted(scene)), firstPlanes(scene), secondPlanes(Distorted(scene));
    firstPlanes.image.ForgetFrame();
    secondPlanes.image.ForgetFrame();
    EXPECT_EQ(MeasureOnce<CSSIMMetric>(firstPlanes.image, secondPlanes.image),
              MeasureOnce<CSSIMMetric>(first.image, second.image));
}

// Flat pictures of levels a and b have the value (2 a b + C1) / (a^2 + b^2 + C1), C1 = 0.0001 peak peak, and
// equal ones exactly 1. The 153 windows are added with an error of half a unit each, 2^-24 of the sum; to a
// double without.
TEST(SsimFast, FlatPictures) {
    const struct {
        int firstLevel, secondLevel;
        double expected;
        int grey;  // (1 - expected) * 255, cut
    } kCases[] = {
        {0, 0, 1, 0},
        {255, 255, 1, 0},
        {100, 120, 24006.5025 / 24406.5025, 4},
        {20, 120, 4806.5025 / 14806.5025, 172},
        {0, 255, 6.5025 / 65031.5025, 254},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.secondLevel);
        const auto first = FlatPicture(20, 12, c.firstLevel);
        const auto second = FlatPicture(20, 12, c.secondLevel);
        const double unit = c.expected == 1 ? 0 : 1.2e-7;
        EXPECT_NEAR(c.expected, MeasureOnce<CSSIMMetric>(*first, *second), 153 * unit / 2);
        Canvas canvas(20, 12);
        EXPECT_NEAR(c.expected, MeasureOnce<CSSIMMetric>(*first, *second, &canvas.picture), 2 * unit);
        EXPECT_EQ(std::vector<int>(3, c.grey), canvas.Pixel(0, 0));
        EXPECT_EQ(std::vector<int>(3, c.grey), canvas.Pixel(19, 8));
        EXPECT_EQ(std::vector<int>(3, 0), canvas.Pixel(19, 9));  // 16 rows: below the last window's top
    }
}

// A column that differs shows where a window reaches it: a window is painted at its right column, the
// leftmost window on the 8 columns it covers. Of 16 rows the upper 9 have windows.
TEST(SsimFast, PlacesInTheMap) {
    const struct {
        int column, firstPainted, lastPainted;
    } kCases[] = {{0, 0, 7}, {3, 0, 10}, {12, 12, 19}, {23, 23, 23}};
    const auto black = FlatPicture(24, 16, 0);
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.column);
        const auto line = BytePicture(24, 16, [&](int x, int) { return x == c.column ? 200 : 0; });
        Canvas canvas(24, 16);
        MeasureOnce<CSSIMMetric>(*black, *line, &canvas.picture);
        for (int x = 0; x < 24; ++x) {
            const bool painted = x >= c.firstPainted && x <= c.lastPainted;
            EXPECT_EQ(painted, canvas.Pixel(x, 0)[0] != 0) << x;
            EXPECT_EQ(painted, canvas.Pixel(x, 8)[0] != 0) << x;
            EXPECT_EQ(0, canvas.Pixel(x, 9)[0]) << x;
        }
    }
}

}  // namespace
}  // namespace Metric
