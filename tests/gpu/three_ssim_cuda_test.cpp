#include "gpu/three_ssim_cuda.h"

#include <gtest/gtest.h>

#include "tests/gpu/literal.h"
#include "tests/gpu/stub_runtime.h"
#include "tests/metrics/pictures.h"

namespace Metric {
namespace {

using Literal::Plane;

/// The Sobel magnitude, its additions from left to right as they are written.
float Magnitude(const Plane& p, int x, int y) {
    const float vertical = 2 * (p.At(x, y - 1) - p.At(x, y + 1)) + p.At(x - 1, y - 1) + p.At(x + 1, y - 1) -
                           p.At(x - 1, y + 1) - p.At(x + 1, y + 1);
    const float horizontal = p.At(x - 1, y - 1) - p.At(x + 1, y - 1) + 2 * (p.At(x - 1, y) - p.At(x + 1, y)) +
                             p.At(x - 1, y + 1) - p.At(x + 1, y + 1);
    return std::sqrt(std::fma(horizontal, horizontal, vertical * vertical));
}

struct Expected {
    explicit Expected(const Literal::Pair& planes)
        : map(Literal::SsimMap(planes.a, planes.b, true)), edges(map) {
        for (int y = 0; y < map.height; ++y)
            for (int x = 0; x < map.width; ++x)
                edges(x, y) =
                    Magnitude(planes.a, x, y) > 30.6f && Magnitude(planes.b, x, y) > 30.6f ? 1.0f : 0.0f;
        const double count = Literal::Sum(edges.cells),
                     others = static_cast<double>(map.cells.size()) - count;
        Plane weighted = map;
        for (std::size_t i = 0; i < map.cells.size(); ++i)
            weighted.cells[i] =
                static_cast<float>(map.cells[i] * (edges.cells[i] == 1 ? 1 / count * 0.7 : 1 / others * 0.3));
        value = std::min(Literal::Sum(weighted.cells), 1.0f);
    }

    Plane map, edges;
    float value = 0;
};

TEST(ThreeSSIMCuda, IsTheWeightedSumOfTheRegions) {
    Gpu::StubRuntime runtime;
    bool bothRegions = false;
    for (const Scene& scene : Literal::GpuScenes()) {
        SCOPED_TRACE(scene.what);
        const PicturePair pictures(scene);
        const Expected expected{Literal::Pair(scene)};
        C3SSIMCUDAMetric metric({&runtime, 0}, PictureSize(scene.width, scene.height));
        Canvas canvas(scene.width, scene.height);
        EXPECT_EQ(expected.value, metric.MeasureAndVisualize(pictures.Images(), canvas.picture)[0].value);
        EXPECT_EQ(expected.value, metric.Measure(pictures.Images())[0].value);
        for (int y = 0; y < scene.height; y += 7) {
            for (int x = y % 5; x < scene.width; x += 5) {
                const bool isEdge = expected.edges.At(x, y) == 1;
                const float level = (255 - expected.map.At(x, y) * 255) * (isEdge ? 1 : 3.0f / 7);
                const int grey = static_cast<int>(std::clamp(level, 0.0f, 255.0f));
                ASSERT_EQ((std::vector{grey, grey, grey}), canvas.Pixel(x, y)) << x << ", " << y;
                bothRegions |= isEdge && expected.edges.At(0, 0) == 0;
            }
        }
    }
    EXPECT_TRUE(bothRegions) << "the scenes show nothing of the weights";
}

// By hand. Identical frames have a map of ones, up to rounding.
TEST(ThreeSSIMCuda, RegionsWithoutPixelsAddNothing) {
    Gpu::StubRuntime runtime;
    const auto dot = [](float level) {
        auto image = std::make_unique<CMetricImage>(24, 16);
        image->GetY()[8 * 24 + 12] = level;
        return image;
    };
    // The dot's left neighbour has twice its level as magnitude, those above and beside the corners less.
    const float atThreshold = 15.3f, aboveThreshold = std::nextafter(15.3f, 16.0f);
    const auto stripes = BytePicture(24, 16, [](int x, int) { return (x + 1) / 2 % 2 * 255; });
    const auto flat = FlatPicture(24, 16, 0), white = FlatPicture(24, 16, 255);
    const auto quiet = dot(atThreshold), loud = dot(aboveThreshold);
    const struct {
        const char* what;
        CMetricImage *first, *second;
        float value;
    } cases[] = {
        {"no edge", flat.get(), flat.get(), 0.3f},
        {"no edge, white", white.get(), white.get(), 0.3f},
        {"edges only", stripes.get(), stripes.get(), 0.7f},
        {"a magnitude of the threshold itself", quiet.get(), quiet.get(), 0.3f},
        {"just above it", loud.get(), loud.get(), 1},
        {"above it in the original only", loud.get(), quiet.get(), 0.3f},
        {"above it in the processed frame only", quiet.get(), loud.get(), 0.3f},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        C3SSIMCUDAMetric metric({&runtime, 0}, PictureSize(24, 16));
        const float value = metric.Measure({c.first, c.second})[0].value;
        EXPECT_NEAR(c.value, value, 2e-5f);
        EXPECT_LE(value, 1);
    }
}

}  // namespace
}  // namespace Metric
