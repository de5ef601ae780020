#include "metrics/msssim_levels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "tests/kernels/targets.h"
#include "tests/metrics/pictures.h"

namespace Metric {
namespace {

constexpr double kWeights[] = {0.0448, 0.2856, 0.3001, 0.2363, 0.1333};

using Random = std::mt19937;

double Uniform(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

/// A level's value whose power alone lies at a step from one grey to the next, or a float beside it.
float AtAStep(Random& random, std::size_t level) {
    const double product = 1 - std::floor(Uniform(random, 0, 256)) / 255;
    const auto value = static_cast<float>(std::pow(product, 1 / kWeights[level]));
    const float neighbours[] = {value, std::nextafter(value, 0.0f), std::nextafter(value, 2.0f)};
    return neighbours[random() % 3];
}

float AnyValue(Random& random) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kRare[] = {0,
                               -0.0f,
                               1,
                               -1,
                               1e-30f,
                               1e-12f,
                               3,
                               1e30f,
                               kInfinity,
                               -kInfinity,
                               std::numeric_limits<float>::quiet_NaN()};
    if (random() % 20 == 0) return kRare[random() % std::size(kRare)];
    return static_cast<float>(random() % 4 == 0 ? 1.0 : Uniform(random, -0.05, 1.01));
}

std::vector<LevelMap> RandomLevels(int width, int height, std::size_t count, Random& random) {
    std::vector<LevelMap> levels;
    for (std::size_t level = 0; level < count; ++level) {
        levels.push_back({width, height, Kernels::MakeFloatPlane(width, height)});
        float* value = levels.back().values.get();
        for (int i = 0; i < width * height; ++i)
            *value++ = i % 3 == 0 && count == 1 ? AtAStep(random, level) : AnyValue(random);
        width = std::max(width / 2, 1);
        height = std::max(height / 2, 1);
    }
    return levels;
}

int GreyAt(const std::vector<LevelMap>& levels, int x, int y) {
    double product = 1;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        const LevelMap& map = levels[level];
        const int column = std::min(x, map.width - 1);
        const int row = std::min(y, map.height - 1);
        product *= std::pow(map.values.get()[row * map.width + column], kWeights[level]);
        x /= 2;
        y /= 2;
    }
    const auto grey = static_cast<float>(std::trunc((1 - product) * 255));
    return std::abs(grey) < 2147483648.0f ? static_cast<int>(grey) & 0xFF : 0;
}

TEST(PaintLevels, EveryPixelByTheDefinition) {
    const struct {
        int width, height;
        std::size_t levels;
    } kCases[] = {{1, 1, 1}, {301, 60, 1}, {8, 8, 2}, {37, 50, 3}, {39, 29, 5}, {305, 222, 5}};
    Random random(1);
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.width << " by " << c.height);
        const std::vector<LevelMap> levels = RandomLevels(c.width, c.height, c.levels, random);
        for (const int cropped : {0, std::min(c.width, c.height) - 1}) {  // a picture smaller than its map
            const int width = c.width - cropped;
            const int height = c.height - cropped;
            Kernels::ForEachTargetAndTeam([&] {
                Canvas canvas(width, height, 77);
                PaintLevels(canvas.picture, levels);
                int wrong = 0;
                for (int y = 0; y < height; ++y)
                    for (int x = 0; x < width; ++x)
                        wrong += canvas.Pixel(x, y) != std::vector<int>(3, GreyAt(levels, x, y));
                EXPECT_EQ(0, wrong);
            });
        }
    }
}

}  // namespace
}  // namespace Metric
