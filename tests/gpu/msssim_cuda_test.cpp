#include "gpu/msssim_cuda.h"

#include <gtest/gtest.h>

#include "tests/gpu/literal.h"
#include "tests/gpu/stub_runtime.h"
#include "tests/metrics/pictures.h"

namespace Metric {
namespace {

using Literal::Plane;

/// The mean of the block of 2 by 2 whose top left is (2 x, row).
float BlockMean(const Plane& finer, int x, int row) {
    return (finer.At(2 * x, row) + finer.At(2 * x + 1, row) + finer.At(2 * x, row + 1) +
            finer.At(2 * x + 1, row + 1)) /
           4;
}

Plane Halved(const Plane& finer) {
    Plane coarse((finer.width + 1) / 2, (finer.height + 1) / 2);
    for (int y = 0; y < coarse.height; ++y)
        for (int x = 0; x < coarse.width; ++x) coarse(x, y) = BlockMean(finer, x, 2 * y);
    return coarse;
}

std::vector<Plane> Maps(Plane a, Plane b) {
    std::vector<Plane> maps = {Literal::SsimMap(a, b, false)};
    while (maps.size() < 5) {
        const Plane coarseA = Halved(a), coarseB = Halved(b);
        const auto sums = Literal::FirstSums(
            a, b, coarseA.width, coarseA.height,
            [](const Plane& finer, int x, int y, int k) { return BlockMean(finer, x, 2 * y + k); });
        maps.push_back(Literal::SsimMap(sums, 1, 0));
        a = coarseA;
        b = coarseB;
    }
    return maps;
}

constexpr float kWeights[] = {0.0448f, 0.2856f, 0.3001f, 0.2363f, 0.1333f};

float Value(const std::vector<Plane>& maps) {
    double product = 1;
    for (std::size_t i = 0; i < 5; ++i)
        product *= std::pow(double{Literal::Mean(maps[i])}, double{kWeights[i]});
    return std::min(static_cast<float>(product), 1.0f);
}

/// A map at (u, v), each 0 to 1 over its size: the mean of the four elements around, weighted by nearness in
/// steps of 1/256.
float Between(const Plane& map, float u, float v) {
    const auto placeOf = [](float way, int size) {
        const float texels = way * static_cast<float>(size) - 0.5f;
        return std::clamp(std::round(texels * 256) / 256, 0.0f, static_cast<float>(size - 1));
    };
    const float x = placeOf(u, map.width), y = placeOf(v, map.height);
    const int left = static_cast<int>(x), top = static_cast<int>(y);
    const float right = x - static_cast<float>(left), below = y - static_cast<float>(top);
    return (1 - right) * (1 - below) * map.At(left, top) + right * (1 - below) * map.At(left + 1, top) +
           (1 - right) * below * map.At(left, top + 1) + right * below * map.At(left + 1, top + 1);
}

/// The picture is the product of the maps, each stretched over the picture's size aligned to 16.
void ExpectPicture(const std::vector<Plane>& maps, const Scene& scene, const Canvas& canvas) {
    const auto alignedWidth = static_cast<float>(Scene::RoundUp(scene.width, 16));
    const auto alignedHeight = static_cast<float>(Scene::RoundUp(scene.height, 16));
    for (int y = 0; y < scene.height; y += 3) {
        for (int x = y % 4; x < scene.width; x += 4) {
            const float u = (static_cast<float>(x) + 0.5f) / alignedWidth;
            const float v = (static_cast<float>(y) + 0.5f) / alignedHeight;
            float product = 1;
            for (std::size_t i = 0; i < 5; ++i) product *= std::pow(Between(maps[i], u, v), kWeights[i]);
            const float level = 255 - product * 255;
            const int grey = std::isnan(level) ? 0 : static_cast<int>(std::clamp(level, 0.0f, 255.0f));
            // Powers may differ in the last digit, a grey then by one.
            ASSERT_NEAR(grey, canvas.Pixel(x, y)[0], 1) << x << ", " << y;
        }
    }
}

TEST(MSSSIMCuda, IsTheProductOfFiveLevels) {
    Gpu::StubRuntime runtime;
    std::vector<Scene> scenes = Literal::GpuScenes();
    scenes.push_back({"a level of 45 rows", 64, 720, Coded});
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(scene.what);
        const PicturePair pictures(scene);
        const Literal::Pair planes(scene);
        const std::vector<Plane> maps = Maps(planes.a, planes.b);
        const float expected = Value(maps);
        CMSSSIMCUDAMetric metric({&runtime, 0}, PictureSize(scene.width, scene.height));
        Canvas canvas(scene.width, scene.height);
        const float value = metric.MeasureAndVisualize(pictures.Images(), canvas.picture)[0].value;
        EXPECT_TRUE(value == expected || (std::isnan(value) && std::isnan(expected)))
            << value << " " << expected;
        ExpectPicture(maps, scene, canvas);
    }
}

// Flat pictures have the same SSIM on all levels, of which the picture shows the power of the weights' sum,
// 1.0001.
TEST(MSSSIMCuda, PaintsTheProductOfAllLevels) {
    Gpu::StubRuntime runtime;
    const auto first = FlatPicture(100, 40, 40), second = FlatPicture(100, 40, 160);
    CMSSSIMCUDAMetric metric({&runtime, 0}, PictureSize(100, 40));
    Canvas canvas(100, 40);
    const float value = metric.MeasureAndVisualize({first.get(), second.get()}, canvas.picture)[0].value;
    EXPECT_GT(value, 0.4f);
    EXPECT_LT(value, 0.6f);
    const int grey = static_cast<int>(255 - value * 255);
    for (const int x : {0, 50, 99})
        EXPECT_EQ((std::vector{grey, grey, grey}), canvas.Pixel(x, x * 39 / 99)) << x;
}

TEST(MSSSIMCuda, ANegativeMeanStaysNotANumber) {
    Gpu::StubRuntime runtime;
    const auto stripes = BytePicture(16, 16, [](int x, int) { return x % 2 * 255; });
    const auto inverted = BytePicture(16, 16, [](int x, int) { return 255 - x % 2 * 255; });
    CMSSSIMCUDAMetric metric({&runtime, 0}, PictureSize(16, 16));
    Canvas canvas(16, 16);
    EXPECT_TRUE(
        std::isnan(metric.MeasureAndVisualize({stripes.get(), inverted.get()}, canvas.picture)[0].value));
    EXPECT_EQ((std::vector{0, 0, 0}), canvas.Pixel(5, 5)) << "nothing to show";
    EXPECT_TRUE(std::isnan(metric.GetAverages(true)[0].value));
}

}  // namespace
}  // namespace Metric
