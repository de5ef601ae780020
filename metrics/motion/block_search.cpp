#include "metrics/motion/block_search.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>

#include "kernels/block_difference.h"

namespace Metric {

namespace {
constexpr int kPixel = 1 << MotionParameters::shiftX;
constexpr int kNoCost = std::numeric_limits<int>::max();  // of a start without a position

constexpr int kNearSpread = kPixel;
constexpr int kWideSpread = 4 * kPixel;
}  // namespace

BlockSearch::BlockSearch(const MotionParameters& motionParameters)
    : parameters(motionParameters),
      rangeX(motionParameters.searchRangeX << MotionParameters::shiftX),
      rangeY(motionParameters.searchRangeY << MotionParameters::shiftY),
      stamps(static_cast<std::size_t>((2 * rangeX + 1) * (2 * rangeY + 1))) {}

void BlockSearch::Begin(const MotionPicture& currentPicture, const ReferencePlanes& referencePlanes) {
    current = currentPicture;
    reference = &referencePlanes;
}

MotionVector BlockSearch::Find(const BlockPlace& place, const CandidateSummary& summary,
                               CandidateList& candidates) {
    block = place;
    best = {0, 0, kNoCost};
    ForgetPositions();

    const bool wide = summary.spread > kWideSpread;
    int rounds = 2;
    if (summary.spread <= kNearSpread) {
        Test(summary.mean.x, summary.mean.y);  // in range, as it lies among vectors that are
    } else {
        rounds = wide ? 1 : 4;
        candidates.DropNearer(rounds);
        for (const MotionVector& candidate : candidates) Test(candidate.x, candidate.y);
    }

    if (SmallPattern(rounds) && wide) {
        TestDiagonalNeighbours(kPixel);
        TestAxialNeighbours(2 * kPixel);
        TestAxialNeighbours(kPixel);
    }
    TestAxialNeighbours(kPixel / 2);
    TestAxialNeighbours(kPixel / 4);
    return best;
}

void BlockSearch::ForgetPositions() {
    if (++stamp != 0) return;
    std::fill(stamps.begin(), stamps.end(), stamp);
    stamp = 1;
}

/// Walks whole pixels until a round finds nothing better. True if it was stopped by the number of rounds.
bool BlockSearch::SmallPattern(int rounds) {
    for (int round = 0; round < rounds; ++round)
        if (!TestAxialNeighbours(kPixel)) return false;
    return true;
}

/// True if one of the four was better.
bool BlockSearch::TestAxialNeighbours(int distance) {
    const MotionVector center = best;
    Test(center.x, center.y + distance);
    Test(center.x, center.y - distance);
    Test(center.x - distance, center.y);
    Test(center.x + distance, center.y);
    return best != center;
}

void BlockSearch::TestDiagonalNeighbours(int distance) {
    const MotionVector center = best;
    Test(center.x + distance, center.y + distance);
    Test(center.x + distance, center.y - distance);
    Test(center.x - distance, center.y + distance);
    Test(center.x - distance, center.y - distance);
}

void BlockSearch::Test(int x, int y) {
    if (!IsFresh(x, y)) return;
    const int cost = CostAt(x, y);
    if (cost < best.cost) best = {x, y, cost};
}

/// Whether the position is in range and wasn't asked for in this search.
bool BlockSearch::IsFresh(int x, int y) {
    if (std::abs(x) > rangeX || std::abs(y) > rangeY) return false;
    std::uint16_t& last = stamps[static_cast<std::size_t>((y + rangeY) * (2 * rangeX + 1) + x + rangeX)];
    if (last == stamp) return false;
    last = stamp;
    return true;
}

int BlockSearch::CostAt(int x, int y) const {
    const std::uint8_t* samples = current.samples + std::ptrdiff_t{block.y} * current.stride + block.x;
    const std::ptrdiff_t offset = std::ptrdiff_t{block.y} * reference->Stride() + block.x;
    const MovedSamples moved = reference->At(x, y);
    const int difference = Kernels::BlockDifference(samples, current.stride, moved.first + offset,
                                                    moved.second == nullptr ? nullptr : moved.second + offset,
                                                    reference->Stride(), block.side);
    if (!parameters.vectorPenalty) return difference;
    return difference + (std::abs(x) >> MotionParameters::shiftX) + (std::abs(y) >> MotionParameters::shiftY);
}

}  // namespace Metric
