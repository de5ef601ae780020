#include "metrics/msssim_pyramid.h"

#include <algorithm>

#include "kernels/resize.h"

namespace Metric {

std::vector<LevelMap> MakeLevels(int width, int height, int smallestSide) {
    std::vector<LevelMap> levels;
    do {
        LevelMap level = {width, height, Kernels::MakeFloatPlane(width, height)};
        std::fill_n(level.values.get(), static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                    1.0f);
        levels.push_back(std::move(level));
        width /= 2;
        height /= 2;
    } while (std::min(width, height) >= smallestSide && levels.size() < kLevelWeights.size());
    return levels;
}

HalvedPictures::HalvedPictures(const std::vector<LevelMap>& levels) {
    for (std::size_t level = 1; level < levels.size(); ++level) {
        const auto half = [&] { return Kernels::MakeFloatPlane(levels[level].width, levels[level].height); };
        halved.push_back({levels[level - 1].width, levels[level - 1].height, {half(), half()}});
    }
}

HalvedPictures::Pictures HalvedPictures::Halve(const Pictures& pictures, std::size_t level) {
    const auto& [width, height, halves] = halved[level - 1];
    const auto halve = [width = width, height = height](const float* source, float* half) {
        constexpr int kPixelBytes = static_cast<int>(sizeof(float));
        Kernels::ResizeLinear(source, width * kPixelBytes, width, height, {0, 0, width, height}, half,
                              width / 2 * kPixelBytes, width / 2, height / 2, 0.5, 0.5);
    };
    halve(pictures.first, halves[0].get());
    halve(pictures.second, halves[1].get());
    return {halves[0].get(), halves[1].get()};
}

}  // namespace Metric
