#pragma once

#include <cstdint>
#include <vector>

#include "metrics/motion/candidate_list.h"
#include "metrics/motion/motion_field.h"
#include "metrics/motion/motion_parameters.h"
#include "metrics/motion/reference_planes.h"

namespace Metric {

/// A square of the current picture.
struct BlockPlace {
    int x;  ///< its first pixel
    int y;
    int side;  ///< 16, 8 or 4 pixels
};

/// What the candidates of a block looked like before its first search.
struct CandidateSummary {
    MotionVector mean;
    int spread = 0;  ///< quarter pixels
};

/// Finds the vector of a block: from the best start it walks downhill, pixel by pixel, then in half and
/// quarter pixels.
///
/// Cost     sum of absolute differences, and the vector's length in whole pixels.
/// Start    where the candidates agree to one pixel, their mean, else the best of them; the more they differ,
///          the fewer steps follow, as the candidates cover the range themselves.
/// Effort   a search never compares a position twice.
class BlockSearch {
public:
    BlockSearch() = default;
    explicit BlockSearch(const MotionParameters& motionParameters);

    /// The pictures of the next searches.
    void Begin(const MotionPicture& currentPicture, const ReferencePlanes& referencePlanes);

    /// Drops from `candidates` those that lie too near to others, so that later searches of the block don't
    /// try them.
    MotionVector Find(const BlockPlace& place, const CandidateSummary& summary, CandidateList& candidates);

private:
    void ForgetPositions();
    bool SmallPattern(int rounds);
    bool TestAxialNeighbours(int distance);
    void TestDiagonalNeighbours(int distance);
    void Test(int x, int y);
    bool IsFresh(int x, int y);
    int CostAt(int x, int y) const;

    MotionParameters parameters;
    int rangeX = 0;  ///< greatest components, quarter pixels
    int rangeY = 0;
    MotionPicture current{};
    const ReferencePlanes* reference = nullptr;

    std::vector<std::uint16_t> stamps;  ///< of each position of the range: the search that tested it last
    std::uint16_t stamp = 0;            ///< of the search under way
    BlockPlace block{};
    MotionVector best;
};

}  // namespace Metric
