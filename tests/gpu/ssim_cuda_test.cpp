#include "gpu/ssim_cuda.h"

#include <gtest/gtest.h>

#include <limits>
#include <numeric>

#include "gpu/gray_map.h"
#include "gpu/msssim_cuda.h"
#include "tests/gpu/literal.h"
#include "tests/gpu/stub_runtime.h"
#include "tests/metrics/pictures.h"

namespace Metric {
namespace {

TEST(SSIMCuda, IsTheMeanOfTheMap) {
    Gpu::StubRuntime runtime;
    for (const Scene& scene : Literal::GpuScenes()) {
        SCOPED_TRACE(scene.what);
        const PicturePair pictures(scene);
        const Literal::Pair planes(scene);
        const Literal::Plane map = Literal::SsimMap(planes.a, planes.b, false);
        const float expected = std::min(Literal::Mean(map), 1.0f);
        CSSIMCUDAMetric metric({&runtime, 0}, PictureSize(scene.width, scene.height));
        Canvas canvas(scene.width, scene.height);
        EXPECT_EQ(expected, metric.MeasureAndVisualize(pictures.Images(), canvas.picture)[0].value);
        EXPECT_EQ(expected, metric.Measure(pictures.Images())[0].value);
        for (int y = 0; y < scene.height; y += 7) {
            for (int x = y % 5; x < scene.width; x += 5) {
                const int grey = static_cast<int>(std::clamp(255 - map.At(x, y) * 255, 0.0f, 255.0f));
                ASSERT_EQ((std::vector{grey, grey, grey}), canvas.Pixel(x, y)) << x << ", " << y;
            }
        }
    }
}

// With S the sum of the window's weights, a flat picture of level a has the mean S a and the mean square S
// a a. In double, so to the accuracy of float sums of squares: a 2^-24 part of 255 * 255 against C2.
TEST(SSIMCuda, FlatPicturesFollowTheFormula) {
    Gpu::StubRuntime runtime;
    const double S = std::pow(std::accumulate(std::begin(Literal::kTaps), std::end(Literal::kTaps), 0.0), 2);
    for (const auto& [a, b] : {std::pair{100, 110}, {0, 255}, {16, 235}, {254, 255}}) {
        SCOPED_TRACE(testing::Message() << a << " and " << b);
        const double luminance = (2 * S * a * S * b + 6.5025) / (S * a * S * a + S * b * S * b + 6.5025);
        const double structure =
            (2 * (S - S * S) * a * b + 58.5225) / ((S - S * S) * (a * a + b * b) + 58.5225);
        const auto first = FlatPicture(40, 24, a), second = FlatPicture(40, 24, b);
        CSSIMCUDAMetric metric({&runtime, 0}, PictureSize(40, 24));
        EXPECT_NEAR(luminance * structure, metric.Measure({first.get(), second.get()})[0].value, 1e-4);
    }
}

// The formula's two sides are rounded in different orders, so a map's element may miss 1 by some last digits.
TEST(CudaMetrics, IdenticalFramesGiveOneUpToRounding) {
    Gpu::StubRuntime runtime;
    std::vector<Scene> scenes = Literal::GpuScenes();
    for (int level = 0; level < 256; ++level)
        scenes.push_back({"flat", 16, 16, [=](int, int) { return static_cast<float>(level); }});
    const float kAllowed = 1 - std::ldexp(4.0f, -24);
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(testing::Message() << scene.what << " " << scene.sample(0, 0));
        const auto image = scene.Image();
        const std::vector<CMetricImage*> images = {image.get(), image.get()};
        const MetricParameters size = PictureSize(scene.width, scene.height);
        const Gpu::GpuDevice device = {&runtime, 0};
        for (const float value : {CSSIMCUDAMetric(device, size).Measure(images)[0].value,
                                  CMSSSIMCUDAMetric(device, size).Measure(images)[0].value}) {
            EXPECT_GE(value, kAllowed);
            EXPECT_LE(value, 1);
        }
    }
}

TEST(PaintGrayMap, LimitsAndCuts) {
    const float map[] = {300,     -3,
                         17.9f,   255,
                         254.99f, std::numeric_limits<float>::quiet_NaN(),
                         0.5f,    std::numeric_limits<float>::infinity(),
                         -1e30f};
    const int expected[] = {255, 0, 17, 255, 254, 0, 0, 255, 0};
    Canvas canvas(9, 1, 77);
    PaintGrayMap(map, 16, canvas.picture);
    for (int x = 0; x < 9; ++x) EXPECT_EQ(std::vector<int>(3, expected[x]), canvas.Pixel(x, 0)) << x;
}

}  // namespace
}  // namespace Metric
