#include "metrics/motion/neighbours.h"

#include <initializer_list>

namespace Metric {

namespace {

/// A quadrant at the edge of a block, and those of its 4 by 4 blocks at that edge.
struct Corner {
    int quadrant;
    std::initializer_list<int> smallBlocks;
};

/// Appends the vectors at the edge of `block` that is made up of `corners`, or its one vector.
void AppendEdge(CandidateList& candidates, const BlockMotion& block, std::initializer_list<Corner> corners) {
    if (block.partition == 16) return candidates.Append(block.vectors[0]);
    for (const Corner& corner : corners) {
        if (block.quadrantPartition[static_cast<std::size_t>(corner.quadrant)] == 8) {
            candidates.Append(block.VectorOf(corner.quadrant, 0));
        } else {
            for (int small : corner.smallBlocks) candidates.Append(block.VectorOf(corner.quadrant, small));
        }
    }
}

MotionVector MeanVector(const BlockMotion& block) {
    MotionVector mean;
    int count = 0;
    block.ForEachVector([&](const MotionVector& vector, int) {
        mean.x += vector.x;
        mean.y += vector.y;
        ++count;
    });
    mean.x /= count;
    mean.y /= count;
    return mean;
}

}  // namespace

void AppendNeighbours(CandidateList& candidates, const MotionField& field, const MotionField* previous,
                      int column, int row) {
    const auto appendFrom = [&](int x, int y, std::initializer_list<Corner> corners) {
        if (field.Contains(x, y)) AppendEdge(candidates, field.At(x, y), corners);
    };
    appendFrom(column, row - 1, {{2, {2, 3}}, {3, {2, 3}}});
    appendFrom(column - 1, row - 1, {{3, {3}}});
    appendFrom(column + 1, row - 1, {{2, {2}}});
    appendFrom(column - 1, row, {{1, {1, 3}}, {3, {1, 3}}});

    if (previous == nullptr) return;
    candidates.Append(MeanVector(previous->At(column, row)));
    if (previous->Contains(column, row + 1)) candidates.Append(MeanVector(previous->At(column, row + 1)));
}

}  // namespace Metric
