#pragma once

#include <vector>

#include "metrics/motion/candidate_list.h"
#include "metrics/motion/motion_field.h"

namespace Metric {

/// The vectors that the last frame's blocks hand on to the places where they lead: what moved goes on moving.
///
/// A list for each 16 by 16 block, all of them in one pool whose size no frame can pass, so that a frame
/// allocates nothing.
class ProjectedVectors {
public:
    ProjectedVectors() = default;
    ProjectedVectors(int gridColumns, int gridRows);

    void Clear();

    /// Appends every vector of `field` that costs less than `costLimit`, measured on 16 by 16 pixels, to the
    /// lists of the block to which it leads and of the eight around.
    void Project(const MotionField& field, float costLimit);

    /// Appends a block's list to `candidates`.
    void AppendTo(CandidateList& candidates, int column, int row) const;

private:
    static constexpr int kNone = -1;

    struct Node {
        MotionVector vector;
        int next;
    };
    struct List {
        int first = kNone;
        int last = kNone;
    };

    void AppendAround(int column, int row, const MotionVector& vector);
    void Append(List& list, const MotionVector& vector);

    int columns = 0;
    int rows = 0;
    std::vector<List> lists;
    std::vector<Node> nodes;
};

}  // namespace Metric
