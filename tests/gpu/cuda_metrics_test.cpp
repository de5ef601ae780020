#include <gtest/gtest.h>

#include <limits>

#include "gpu/gray_map.h"
#include "gpu/msssim_cuda.h"
#include "gpu/ssim_cuda.h"
#include "gpu/three_ssim_cuda.h"
#include "tests/gpu/literal.h"
#include "tests/gpu/stub_runtime.h"

// The measures on the host's device against their definition.

namespace Metric {
namespace {

using Literal::Plane;

int LimitedGrey(float level) {
    return std::isnan(level) ? 0 : static_cast<int>(std::clamp(level, 0.0f, 255.0f));
}

std::pair<Plane, Plane> PlanesOf(const PicturePair& pair) {
    return {{pair.width, pair.height, pair.firstPlane}, {pair.width, pair.height, pair.secondPlane}};
}

/// `expected` has the `value` of the pair and the Level(x, y) of its picture, whose greys may be off by
/// `greys`.
template <class Measured, class Expected>
void ExpectPair(const PicturePair& pair, const Expected& expected, int greys = 0) {
    Gpu::StubRuntime runtime;
    const int width = pair.first->GetWidth(), height = pair.first->GetHeight();
    Measured metric({&runtime, 0}, PictureSize(width, height));
    Canvas canvas(width, height);
    for (const float value : {metric.MeasureAndVisualize(pair.Images(), canvas.picture)[0].value,
                              metric.Measure(pair.Images())[0].value})
        EXPECT_TRUE(Literal::IsSame(expected.value, value)) << expected.value << ' ' << value;
    for (int y = 0; y < height; y += 3) {
        for (int x = y % 4; x < width; x += 4) {
            const std::vector<int> pixel = canvas.Pixel(x, y);
            ASSERT_NEAR(LimitedGrey(expected.Level(x, y)), pixel[0], greys) << x << ", " << y;
            ASSERT_EQ(std::vector(3, pixel[0]), pixel) << x << ", " << y;
        }
    }
}

struct Ssim {
    explicit Ssim(const std::pair<Plane, Plane>& planes)
        : map(Literal::SsimMap(planes.first, planes.second, false)),
          value(std::min(Literal::Mean(map), 1.0f)) {}
    float Level(int x, int y) const { return 255 - map.At(x, y) * 255; }

    Plane map;
    float value;
};

TEST(SSIMCuda, IsTheMeanOfTheMap) {
    for (const Scene& scene : Literal::GpuScenes()) {
        SCOPED_TRACE(scene.what);
        const PicturePair pair(scene);
        ExpectPair<CSSIMCUDAMetric>(pair, Ssim(PlanesOf(pair)));
    }
}

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

struct MsSsim {
    explicit MsSsim(std::pair<Plane, Plane> planes) : finest(planes.first) {
        auto& [a, b] = planes;
        maps.push_back(Literal::SsimMap(a, b, false));
        while (maps.size() < 5) {
            const Plane coarseA = Halved(a), coarseB = Halved(b);
            const auto sums = Literal::FirstSums(
                a, b, coarseA.width, coarseA.height,
                [](const Plane& finer, int x, int y, int k) { return BlockMean(finer, x, 2 * y + k); });
            maps.push_back(Literal::SsimMap(sums, 1, 0));
            a = coarseA;
            b = coarseB;
        }
        double product = 1;
        for (std::size_t i = 0; i < 5; ++i)
            product *= std::pow(double{Literal::Mean(maps[i])}, double{kWeights[i]});
        value = std::min(static_cast<float>(product), 1.0f);
    }

    /// The product of the maps, each stretched over the picture's size aligned to 16.
    float Level(int x, int y) const {
        const float u = (static_cast<float>(x) + 0.5f) / static_cast<float>(Scene::RoundUp(finest.width, 16));
        const float v =
            (static_cast<float>(y) + 0.5f) / static_cast<float>(Scene::RoundUp(finest.height, 16));
        float product = 1;
        for (std::size_t i = 0; i < 5; ++i) product *= std::pow(Between(maps[i], u, v), kWeights[i]);
        return 255 - product * 255;
    }

    static constexpr float kWeights[] = {0.0448f, 0.2856f, 0.3001f, 0.2363f, 0.1333f};
    Plane finest;
    std::vector<Plane> maps;
    float value;
};

// Powers may differ in the last digit, a grey then by one.
TEST(MSSSIMCuda, IsTheProductOfFiveLevels) {
    std::vector<Scene> scenes = Literal::GpuScenes();
    scenes.push_back({"a level of 45 rows", 64, 720, Coded});
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(scene.what);
        const PicturePair pair(scene);
        ExpectPair<CMSSSIMCUDAMetric>(pair, MsSsim(PlanesOf(pair)), 1);
    }
}

TEST(MSSSIMCuda, ANegativeMeanStaysNotANumber) {
    Gpu::StubRuntime runtime;
    const auto stripes = BytePicture(16, 16, [](int x, int) { return x % 2 * 255; });
    const auto inverted = BytePicture(16, 16, [](int x, int) { return 255 - x % 2 * 255; });
    CMSSSIMCUDAMetric metric({&runtime, 0}, PictureSize(16, 16));
    Canvas canvas(16, 16);
    EXPECT_TRUE(
        std::isnan(metric.MeasureAndVisualize({stripes.get(), inverted.get()}, canvas.picture)[0].value));
    EXPECT_EQ(std::vector(3, 0), canvas.Pixel(5, 5)) << "nothing to show";
    EXPECT_TRUE(std::isnan(metric.GetAverages(true)[0].value));
}

/// The Sobel magnitude, its additions from left to right as they are written.
float Magnitude(const Plane& p, int x, int y) {
    const float vertical = 2 * (p.At(x, y - 1) - p.At(x, y + 1)) + p.At(x - 1, y - 1) + p.At(x + 1, y - 1) -
                           p.At(x - 1, y + 1) - p.At(x + 1, y + 1);
    const float horizontal = p.At(x - 1, y - 1) - p.At(x + 1, y - 1) + 2 * (p.At(x - 1, y) - p.At(x + 1, y)) +
                             p.At(x - 1, y + 1) - p.At(x + 1, y + 1);
    return std::sqrt(std::fma(horizontal, horizontal, vertical * vertical));
}

struct ThreeSsim {
    explicit ThreeSsim(const std::pair<Plane, Plane>& planes)
        : map(Literal::SsimMap(planes.first, planes.second, true)), edges(map) {
        const auto& [a, b] = planes;
        for (int y = 0; y < map.height; ++y)
            for (int x = 0; x < map.width; ++x)
                edges(x, y) = Magnitude(a, x, y) > 30.6f && Magnitude(b, x, y) > 30.6f ? 1.0f : 0.0f;
        const double count = Literal::Sum(edges.cells);
        const double others = static_cast<double>(map.cells.size()) - count;
        Plane weighted = map;
        for (std::size_t i = 0; i < map.cells.size(); ++i)
            weighted.cells[i] =
                static_cast<float>(map.cells[i] * (edges.cells[i] == 1 ? 1 / count * 0.7 : 1 / others * 0.3));
        value = std::min(Literal::Sum(weighted.cells), 1.0f);
    }
    float Level(int x, int y) const {
        return (255 - map.At(x, y) * 255) * (edges.At(x, y) == 1 ? 1 : 3.0f / 7);
    }

    Plane map, edges;
    float value;
};

TEST(ThreeSSIMCuda, IsTheWeightedSumOfTheRegions) {
    bool bothRegions = false;
    for (const Scene& scene : Literal::GpuScenes()) {
        SCOPED_TRACE(scene.what);
        const PicturePair pair(scene);
        const ThreeSsim expected(PlanesOf(pair));
        ExpectPair<C3SSIMCUDAMetric>(pair, expected);
        const auto edges = std::count(expected.edges.cells.begin(), expected.edges.cells.end(), 1.0f);
        bothRegions |= edges > 0 && edges < std::ssize(expected.edges.cells);
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
    const auto quiet = dot(15.3f), loud = dot(std::nextafter(15.3f, 16.0f));
    const auto stripes = BytePicture(24, 16, [](int x, int) { return (x + 1) / 2 % 2 * 255; });
    const auto flat = FlatPicture(24, 16, 0), white = FlatPicture(24, 16, 255);
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

// The formula's two sides are rounded in different orders, so a map's element may miss 1 by some last digits.
TEST(CudaMetrics, IdenticalFramesGiveOneUpToRounding) {
    Gpu::StubRuntime runtime;
    const Gpu::GpuDevice device = {&runtime, 0};
    std::vector<Scene> scenes = Literal::GpuScenes();
    for (int level = 0; level < 256; ++level)
        scenes.push_back({"flat", 16, 16, [=](int, int) { return static_cast<float>(level); }});
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(testing::Message() << scene.what << " " << scene.sample(0, 0));
        const auto image = scene.Image();
        const MetricParameters size = PictureSize(scene.width, scene.height);
        const std::vector<CMetricImage*> images = {image.get(), image.get()};
        for (const float value : {CSSIMCUDAMetric(device, size).Measure(images)[0].value,
                                  CMSSSIMCUDAMetric(device, size).Measure(images)[0].value}) {
            EXPECT_GE(value, 1 - std::ldexp(4.0f, -24));
            EXPECT_LE(value, 1);
        }
    }
}

TEST(PaintGrayMap, LimitsAndCuts) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const float map[] = {300, -3, 17.9f, 255, 254.99f, std::nanf(""), 0.5f, kInfinity, -1e30f};
    const int expected[] = {255, 0, 17, 255, 254, 0, 0, 255, 0};
    Canvas canvas(9, 1, 77);
    PaintGrayMap(map, 16, canvas.picture);
    EXPECT_EQ(0, canvas.WrongPixels([&](int x, int) { return expected[x]; }));
}

}  // namespace
}  // namespace Metric
