#include "metrics/motion/block_decision.h"

#include <array>
#include <cstddef>

namespace Metric {

namespace {

using FourVectors = std::array<MotionVector, 4>;

int CostOf(const FourVectors& vectors) {
    int cost = 0;
    for (const MotionVector& vector : vectors) cost += vector.cost;
    return cost;
}

/// The four parts of a block, in raster order.
std::array<BlockPlace, 4> PartsOf(const BlockPlace& place) {
    const int side = place.side / 2;
    return {{{place.x, place.y, side},
             {place.x + side, place.y, side},
             {place.x, place.y + side, side},
             {place.x + side, place.y + side, side}}};
}

FourVectors FindParts(BlockSearch& search, const BlockPlace& place, const CandidateSummary& summary,
                      CandidateList& candidates) {
    FourVectors vectors;
    const std::array<BlockPlace, 4> parts = PartsOf(place);
    for (std::size_t part = 0; part < 4; ++part)
        vectors[part] = search.Find(parts[part], summary, candidates);
    return vectors;
}

bool IsWorse(int cost, float threshold) {
    return static_cast<float>(cost) > threshold;
}

}  // namespace

BlockMotion DecideBlock(BlockSearch& search, CandidateList& candidates, int x, int y,
                        const CostThresholds& thresholds) {
    const BlockPlace place = {x, y, MotionParameters::blockSize};
    const MotionVector mean = candidates.Mean();
    const CandidateSummary summary = {mean, candidates.Spread(mean)};

    BlockMotion motion;
    motion.vectors[0] = search.Find(place, summary, candidates);
    if (!IsWorse(motion.vectors[0].cost, thresholds.split)) return motion;

    candidates.Append(motion.vectors[0]);
    const FourVectors quadrants = FindParts(search, place, summary, candidates);
    if (CostOf(quadrants) >= motion.vectors[0].cost) return motion;

    motion.partition = 8;
    candidates.Clear();
    for (const MotionVector& vector : quadrants) candidates.Append(vector);
    const std::array<BlockPlace, 4> places = PartsOf(place);
    for (std::size_t quadrant = 0; quadrant < 4; ++quadrant) {
        motion.vectors[4 * quadrant] = quadrants[quadrant];
        if (!IsWorse(quadrants[quadrant].cost, thresholds.quadrant)) continue;

        const FourVectors small = FindParts(search, places[quadrant], summary, candidates);
        if (CostOf(small) >= quadrants[quadrant].cost) continue;
        motion.quadrantPartition[quadrant] = 4;
        for (std::size_t part = 0; part < 4; ++part) motion.vectors[4 * quadrant + part] = small[part];
    }
    return motion;
}

}  // namespace Metric
