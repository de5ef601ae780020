#include "metrics/msssim_levels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "kernels/bands.h"
#include "kernels/painting.h"
#include "metric/painting.h"
#include "metrics/msssim_greys.h"

namespace Metric {

namespace {

/// A row of a level, or its last.
const float* RowOf(const LevelMap& level, int y) {
    return level.values.get() + static_cast<std::ptrdiff_t>(std::min(y, level.height - 1)) * level.width;
}

/// The grey at a pixel as it is defined.
std::uint8_t GreyAt(const std::vector<LevelMap>& levels, int x, int y) {
    double product = 1;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        const int column = std::min(x >> level, levels[level].width - 1);
        product *= std::pow(RowOf(levels[level], y >> level)[column], kLevelWeights[level]);
    }
    // Cut before the rounding to float can carry it up.
    return Grey(static_cast<float>(std::trunc((1 - product) * 255))).b;
}

/// What a thread needs for a row of the picture.
struct RowMemory {
    RowMemory(const std::vector<LevelMap>& levels, int width)
        : greys(static_cast<std::size_t>(width)), unsure(static_cast<std::size_t>(width)) {
        for (const LevelMap& level : levels) sums.emplace_back(static_cast<std::size_t>(level.width));
    }

    std::vector<std::vector<double>> sums;  ///< of a level's logarithms and those of the coarser ones
    std::vector<std::uint8_t> greys;
    std::vector<int> unsure;
};

/// Brings the sums of the levels up to row y, those of which a new row begins there, or all.
void SumLevels(const std::vector<LevelMap>& levels, int y, bool all, RowMemory& memory) {
    for (std::size_t level = levels.size(); level-- > 0;) {
        if (!all && y % (1 << level) != 0) continue;
        const int width = levels[level].width;
        double* const sums = memory.sums[level].data();
        WeighLogarithms(RowOf(levels[level], y >> level), width, kLevelWeights[level], sums);
        if (level + 1 < levels.size())
            AddCoarser(memory.sums[level + 1].data(), levels[level + 1].width, width, sums);
    }
}

}  // namespace

void PaintLevels(rkVideoImage& target, const std::vector<LevelMap>& levels) {
    const int width = target.VisibleWidth();
    const int height = target.VisibleHeight();
    std::vector<RowMemory> memories(
        static_cast<std::size_t>(Kernels::TeamSize(width, height, Kernels::kPixelsPerThread)),
        RowMemory(levels, width));
    Kernels::ForEachBand(width, height, [&](const Kernels::Band& band) {
        RowMemory& memory = memories[static_cast<std::size_t>(band.thread)];
        for (int y = band.first; y < band.end; ++y) {
            SumLevels(levels, y, y == band.first, memory);
            const int unsure =
                GreysOfSums(memory.sums[0].data(), width, memory.greys.data(), memory.unsure.data());
            for (int i = 0; i < unsure; ++i) {
                const int x = memory.unsure[static_cast<std::size_t>(i)];
                memory.greys[static_cast<std::size_t>(x)] = GreyAt(levels, x, y);
            }
            Kernels::SpreadGreys(memory.greys.data(), width,
                                 target.Data() + static_cast<std::ptrdiff_t>(y) * target.Stride());
        }
    });
}

}  // namespace Metric
