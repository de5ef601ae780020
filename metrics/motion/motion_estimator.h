#pragma once

#include "metrics/motion/block_search.h"
#include "metrics/motion/candidate_list.h"
#include "metrics/motion/cost_statistics.h"
#include "metrics/motion/motion_field.h"
#include "metrics/motion/motion_parameters.h"
#include "metrics/motion/projected_vectors.h"
#include "metrics/motion/reference_planes.h"

namespace Metric {

/// Motion between successive 8-bit pictures, block by block: a predictive block matcher with variable block
/// sizes and quarter-pixel vectors.
///
/// Method   a block starts from the vectors known around it, of this frame and of the last one, and compares
///          few positions. It is split only where its match is worse than recent frames lead one to expect.
/// State    the last frame's field, and the running statistics of the costs. Frames must come in order.
/// Numbers  integers; the statistics in float, in raster order. The same result on every instruction set.
/// Threads  one at a time. The search works alone, since a block waits for its neighbours; a team shares the
///          half pixels of the reference. A frame allocates nothing once the candidate list has grown to its
///          greatest length.
class MotionEstimator {
public:
    /// For pictures of `width` by `height`, multiples of 16. Once, before all else.
    void Setup(int height, int width, const MotionParameters& motionParameters);

    /// Finds the vectors that lead from `current` to `reference`. Both have rows of `Stride` bytes;
    /// `reference` has a margin on every side that repeats its border.
    void Estimate(const MotionPicture& current, const MotionPicture& reference);

    /// The result of the last `Estimate`.
    const MotionField& Field() const { return field; }

    int Margin() const { return parameters.Margin(); }
    int Stride() const { return planes.Stride(); }

private:
    void GatherCandidates(int column, int row);

    MotionParameters parameters;
    ReferencePlanes planes;
    ProjectedVectors projected;
    CandidateList candidates;
    BlockSearch search;
    CostStatistics statistics;
    MotionField field;
    MotionField previousField;
    bool hasPrevious = false;
};

}  // namespace Metric
