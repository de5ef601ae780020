#include "metrics/msssim_levels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "metric/painting.h"

namespace Metric {

namespace {

/// Row `y` of a level, or its last, each value raised to `weight`.
std::vector<double> PowersOfRow(const LevelMap& level, int y, double weight) {
    const float* row =
        level.values.get() + static_cast<std::ptrdiff_t>(std::min(y, level.height - 1)) * level.width;
    std::vector<double> powers(static_cast<std::size_t>(level.width));
    std::transform(row, row + level.width, powers.begin(),
                   [=](float value) { return std::pow(value, weight); });
    return powers;
}

}  // namespace

void PaintLevels(rkVideoImage& target, const std::vector<LevelMap>& levels) {
    std::vector<std::vector<double>> powers(levels.size());
    std::vector<double> products(static_cast<std::size_t>(target.VisibleWidth()));
    for (int y = 0; y < target.VisibleHeight(); ++y) {
        std::fill(products.begin(), products.end(), 1.0);
        for (std::size_t level = 0; level < levels.size(); ++level) {
            if (y % (1 << level) == 0)
                powers[level] = PowersOfRow(levels[level], y >> level, kLevelWeights[level]);
            const std::size_t last = powers[level].size() - 1;
            for (std::size_t x = 0; x < products.size(); ++x)
                products[x] *= powers[level][std::min(x >> level, last)];
        }

        std::uint8_t* pixel = target.Data() + static_cast<std::ptrdiff_t>(y) * target.Stride();
        for (const double product : products) {
            // Cut before the rounding to float can carry it up.
            const Bgr grey = Grey(static_cast<float>(std::trunc((1 - product) * 255)));
            *pixel++ = grey.b;
            *pixel++ = grey.g;
            *pixel++ = grey.r;
        }
    }
}

}  // namespace Metric
