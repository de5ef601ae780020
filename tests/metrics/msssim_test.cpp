#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "kernels/reference/flat_ssim.h"
#include "kernels/reference/gauss_ssim.h"
#include "metrics/msssim_fast.h"
#include "metrics/msssim_levels.h"
#include "metrics/msssim_precise.h"
#include "tests/metrics/ssim_frames.h"

namespace Metric {
namespace {

constexpr double kWeights[] = {0.0448, 0.2856, 0.3001, 0.2363, 0.1333};

/// What a level gives at each of its pixels, and their mean.
struct Level {
    int width, height;
    std::vector<float> map;
    double mean = 0;
};

/// The levels down to the last one of whole SSIM, each halved from the one before; levelOf(first, second,
/// width, isLast) is a map and its mean.
template <class LevelOf>
std::vector<Level> LevelsOf(const PicturePair& pair, int smallestSide, const LevelOf& levelOf) {
    std::vector<Level> levels;
    std::vector<float> first = pair.firstPlane, second = pair.secondPlane;
    int width = pair.width, height = pair.height;
    for (bool isLast = false; !isLast; width /= 2, height /= 2) {
        isLast = levels.size() == 4 || std::min(width, height) / 2 < smallestSide;
        const auto& [map, mean] = levelOf(first, second, width, isLast);
        levels.push_back({width, height, map, mean});
        first = Halved(first, width, height);
        second = Halved(second, width, height);
    }
    return levels;
}

/// The grey of a pixel, level by level from the pixel's own place.
int GreyAt(const std::vector<Level>& levels, int x, int y) {
    double product = 1;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        const auto& [width, height, map, mean] = levels[level];
        const int place = std::min(y >> level, height - 1) * width + std::min(x >> level, width - 1);
        product *= std::pow(double{map[static_cast<std::size_t>(place)]}, kWeights[level]);
    }
    const auto grey = static_cast<float>(std::trunc((1 - product) * 255));
    return std::abs(grey) < 2147483648.0f ? static_cast<int>(grey) & 0xFF : 0;
}

/// A metric's value and picture by the mean of each level; the last one's weight counts in the picture alone.
template <class Measured, class Number>
void ExpectProduct(const PicturePair& pair, const Scene& scene, const std::vector<Level>& levels) {
    Number product = 1;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        const bool isLast = level + 1 == levels.size();
        product *= static_cast<Number>(std::pow(levels[level].mean, isLast ? 1 : kWeights[level]));
    }
    const auto expected = static_cast<float>(product);
    ASSERT_FALSE(std::isnan(expected));
    Kernels::ForEachTargetAndTeam(
        [&] { EXPECT_EQ(expected, MeasureOnce<Measured>(*pair.first, *pair.second)); });
    EXPECT_EQ(1, MeasureOnce<Measured>(*pair.first, *pair.first));
    Canvas canvas(scene.width, scene.height);
    EXPECT_EQ(expected, MeasureOnce<Measured>(*pair.first, *pair.second, &canvas.picture));
    EXPECT_EQ(0, canvas.WrongPixels([&](int x, int y) { return GreyAt(levels, x, y); }));
}

// (0.01 peak)^2 and (0.03 peak)^2; for windows of 64 samples' sums, in float.
constexpr double kC1 = 255 * 0.0001 * 255.75, kC2 = 255 * 0.0009 * 255.75;
constexpr float kC1OfSums = (((0.01f * 4096) * 0.01f) * 255.0f) * 255.75f;
constexpr float kC2OfSums = (((0.03f * 4096) * 0.03f) * 255.0f) * 255.75f;

TEST(MsssimFast, ScenesByTheDefinition) {
    const auto levelOf = [](const auto& first, const auto& second, int width, bool isLast) {
        const std::vector<float> map = MapOf(first, second, width, [=](const auto& planes) {
            isLast ? Kernels::Reference::FlatSSIM(planes, kC1OfSums, kC2OfSums, nullptr)
                   : Kernels::Reference::FlatContrastStructure(planes, kC2OfSums, nullptr);
        });
        const int height = static_cast<int>(map.size()) / width;
        double sum = 0;
        for (int y = 0; y < height - 7; ++y)
            for (int x = 7; x < width; ++x) sum += double{map[static_cast<std::size_t>(y * width + x)]};
        return std::pair(map, sum / double{static_cast<float>(width - 7) * static_cast<float>(height - 7)});
    };
    std::vector<Scene> scenes = Scenes();
    for (const auto& [width, height] : {std::pair(15, 640), {64, 64}, {127, 65}, {640, 128}})
        scenes.push_back({"at the limit of a level", width, height, Coded});
    for (const Scene& scene : scenes) {
        SCOPED_TRACE(scene.what);
        const PicturePair pair(scene);
        ExpectProduct<CMSSSIMMetric, float>(pair, scene, LevelsOf(pair, 8, levelOf));
    }
}

TEST(MsssimPrecise, ScenesByTheDefinition) {
    const auto levelOf = [](const auto& first, const auto& second, int width, bool isLast) {
        constexpr auto kBlack = Kernels::BorderConstant;
        constexpr auto c1 = static_cast<float>(kC1), c2 = static_cast<float>(kC2);
        double mean = 0;
        const std::vector<float> map = MapOf(first, second, width, [&](const auto& planes) {
            mean = isLast ? Kernels::Reference::GaussSSIM(planes, kBlack, c1, c2, nullptr)
                          : Kernels::Reference::GaussContrastStructure(planes, kBlack, kC2, nullptr);
        });
        return std::pair(map, mean);
    };
    for (const Scene& scene : SmallScenes()) {
        SCOPED_TRACE(scene.what);
        const PicturePair pair(scene);
        ExpectProduct<CMSSSIMMetricIpp, double>(pair, scene, LevelsOf(pair, 1, levelOf));
    }
}

TEST(MsssimFast, SameOfBytes) {
    for (const Scene& scene : ByteScenes()) ExpectSameOfBytes<CMSSSIMMetric>(scene);
}

// The contrast terms of a picture and its negative are below 0 and have no real power.
TEST(Msssim, NegativeIsNotANumber) {
    const auto first = BytePicture(32, 32, [](int x, int y) { return (x + y) % 2 * 200; });
    const auto second = BytePicture(32, 32, [](int x, int y) { return (x + y + 1) % 2 * 200; });
    Canvas canvas(32, 32);
    EXPECT_TRUE(std::isnan(MeasureOnce<CMSSSIMMetric>(*first, *second, &canvas.picture)));
    EXPECT_EQ(std::vector<int>(3, 0), canvas.Pixel(0, 0));
    EXPECT_TRUE(std::isnan(MeasureOnce<CMSSSIMMetricIpp>(*first, *second)));
}

using Random = std::mt19937;

double Uniform(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

/// A value of the finest level whose power alone lies at a step from one grey to the next, or a float beside.
float AtAStep(Random& random) {
    const double product = 1 - std::floor(Uniform(random, 0, 256)) / 255;
    const auto value = static_cast<float>(std::pow(product, 1 / kWeights[0]));
    const float neighbours[] = {value, std::nextafter(value, 0.0f), std::nextafter(value, 2.0f)};
    return neighbours[random() % 3];
}

float AnyValue(Random& random) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const float rare[] = {0, -0.0f, 1, -1, 1e-30f, 1e-12f, 3, 1e30f, kInfinity, -kInfinity, std::nanf("")};
    if (random() % 20 == 0) return rare[random() % std::size(rare)];
    return static_cast<float>(random() % 4 == 0 ? 1.0 : Uniform(random, -0.05, 1.01));
}

TEST(PaintLevels, EveryPixelByTheDefinition) {
    constexpr struct {
        int width, height, levels;
    } kCases[] = {{1, 1, 1}, {301, 60, 1}, {8, 8, 2}, {37, 50, 3}, {39, 29, 5}, {305, 222, 5}};
    Random random(1);
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.width << " by " << c.height);
        std::vector<Level> levels;
        std::vector<LevelMap> maps;
        for (int level = 0; level < c.levels; ++level) {
            const int width = std::max(c.width >> level, 1), height = std::max(c.height >> level, 1);
            std::vector<float> map;
            for (int i = 0; i < width * height; ++i)
                map.push_back(i % 3 == 0 && c.levels == 1 ? AtAStep(random) : AnyValue(random));
            levels.push_back({width, height, map});
            maps.push_back({width, height, Kernels::MakeFloatPlane(width, height)});
            std::copy(map.begin(), map.end(), maps.back().values.get());
        }
        for (const int cropped : {0, std::min(c.width, c.height) - 1}) {  // a picture smaller than its map
            Kernels::ForEachTargetAndTeam([&] {
                Canvas canvas(c.width - cropped, c.height - cropped, 77);
                PaintLevels(canvas.picture, maps);
                EXPECT_EQ(0, canvas.WrongPixels([&](int x, int y) { return GreyAt(levels, x, y); }));
            });
        }
    }
}

}  // namespace
}  // namespace Metric
