#include "metrics/blocking.h"

#include <gtest/gtest.h>

#include "metrics/reference/blocking.h"
#include "tests/kernels/targets.h"
#include "tests/metrics/pictures.h"
#include "tests/metrics/scenes.h"

namespace Metric {
namespace {

// The plain loops give the expected bits.
TEST(Blocking, EqualsReference) {
    for (const Scene& scene : Scenes()) {
        SCOPED_TRACE(scene.what);
        const std::vector<float> plane = scene.Padded(8);
        const Reference::BlockingFrame expected = Reference::Blocking(
            plane.data(), Scene::RoundUp(scene.width, 8), Scene::RoundUp(scene.height, 8));
        const auto image = scene.Image();
        Kernels::ForEachTargetAndTeam([&] {
            Probe<CBlockingMetric> metric(PictureSize(scene.width, scene.height));
            Canvas canvas(scene.width, scene.height);
            EXPECT_EQ(expected.value, metric.Measure({image.get()})[0].value);
            EXPECT_EQ(expected.value, metric.MeasureAndVisualize({image.get()}, canvas.picture)[0].value);
            EXPECT_TRUE(std::equal(expected.map.begin(), expected.map.end(), metric.GetMap(ComponentY)));
        });
    }
}

// A step in an otherwise flat picture, on paper: s is its height, the strength 16 s, or -1 if it is above
// 40. Across a vertical line 255 is the limit in all rows of a block but the last. `shown` is the grey in
// the first place of a block and in the last one, drawn up to 50 away from its neighbour.
TEST(Blocking, StepBetweenFlatHalves) {
    constexpr struct {
        const char* what;
        bool vertical;
        int position, height;
        float value;
        int shown;
    } kCases[] = {
        {"at a vertical line", true, 8, 10, 160, 160},
        {"limited to 255, but 320 in the last row", true, 8, 20, (7 * 255 + 320) / 8.0f, 255},
        {"40 is no real edge yet", true, 8, 40, (7 * 255 + 640) / 8.0f, 255},
        {"a real edge", true, 8, 41, 0, 255},
        {"off the grid", true, 4, 20, 0, 0},
        {"at a horizontal line", false, 8, 10, 160, 160},
        {"a horizontal line has no limit", false, 8, 20, 320, 255},
        {"horizontal, a real edge", false, 8, 41, 0, 255},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        const int width = c.vertical ? 16 : 8, height = 24 - width;
        const auto image = BytePicture(width, height, [&](int x, int y) {
            return 100 + ((c.vertical ? x : y) < c.position ? 0 : c.height);
        });
        CBlockingMetric metric(PictureSize(width, height));
        Canvas canvas(width, height);
        EXPECT_EQ(c.value, metric.MeasureAndVisualize({image.get()}, canvas.picture)[0].value);
        EXPECT_EQ(c.value, metric.GetAverages(true)[0].value);

        // The line's cells: columns 7 and 8, or rows 8 and 9.
        const int side = c.vertical ? 7 : 8;
        for (int across = side - 1; across <= side + 2; ++across) {
            for (const int along : {0, 7}) {
                const auto pixel = c.vertical ? canvas.Pixel(across, along) : canvas.Pixel(along, across);
                EXPECT_EQ(across == side || across == side + 1 ? c.shown : 0, pixel[0]) << across;
            }
        }
    }
}

// From a Python program of its own with lists, its floats rounded by struct.
TEST(Blocking, OtherProgram) {
    const Scene scene = {"", 40, 32, [](int x, int y) {
                             const int mosaic = (x / 8 * 29 + y / 8 * 17) % 32;
                             const int grain = x * y % (1 + x / 8 * y / 8 % 5);
                             return static_cast<float>(40 + mosaic + grain) +
                                    static_cast<float>((x + y) % 4) / 4;
                         }};
    CBlockingMetric metric(PictureSize(scene.width, scene.height));
    EXPECT_EQ(155.753311f, metric.Measure({scene.Image().get()})[0].value);
    EXPECT_EQ(std::vector<int>{0}, metric.GetResultInfo(true)[0].files);
}

}  // namespace
}  // namespace Metric
