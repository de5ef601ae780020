#include "metrics/motion/projected_vectors.h"

#include <algorithm>
#include <cstddef>

#include "metrics/motion/motion_parameters.h"

namespace Metric {

namespace {
constexpr std::size_t kVectorsOfBlock = 16;
constexpr std::size_t kListsOfVector = 9;
}  // namespace

ProjectedVectors::ProjectedVectors(int gridColumns, int gridRows)
    : columns(gridColumns), rows(gridRows), lists(static_cast<std::size_t>(gridColumns * gridRows)) {
    nodes.reserve(lists.size() * kVectorsOfBlock * kListsOfVector);
}

void ProjectedVectors::Clear() {
    std::fill(lists.begin(), lists.end(), List{});
    nodes.clear();
}

void ProjectedVectors::Project(const MotionField& field, float costLimit) {
    constexpr int kSize = MotionParameters::blockSize;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            field.At(column, row).ForEachVector([&](const MotionVector& vector, int share) {
                if (static_cast<float>(vector.cost * share) >= costLimit) return;
                // A vector points back to where the block came from; the block goes on the other way.
                AppendAround((column * kSize + (-vector.x >> MotionParameters::shiftX)) / kSize,
                             (row * kSize + (-vector.y >> MotionParameters::shiftY)) / kSize, vector);
            });
        }
    }
}

void ProjectedVectors::AppendTo(CandidateList& candidates, int column, int row) const {
    const List& list = lists[static_cast<std::size_t>(row * columns + column)];
    for (int index = list.first; index != kNone;) {
        const Node& node = nodes[static_cast<std::size_t>(index)];
        candidates.Append(node.vector);
        index = node.next;
    }
}

void ProjectedVectors::AppendAround(int column, int row, const MotionVector& vector) {
    for (int y = std::max(row - 1, 0); y <= std::min(row + 1, rows - 1); ++y)
        for (int x = std::max(column - 1, 0); x <= std::min(column + 1, columns - 1); ++x)
            Append(lists[static_cast<std::size_t>(y * columns + x)], vector);
}

void ProjectedVectors::Append(List& list, const MotionVector& vector) {
    const int index = static_cast<int>(nodes.size());
    nodes.push_back({vector, kNone});
    if (list.first == kNone) {
        list.first = index;
    } else {
        nodes[static_cast<std::size_t>(list.last)].next = index;
    }
    list.last = index;
}

}  // namespace Metric
