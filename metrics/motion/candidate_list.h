#pragma once

#include <cstddef>
#include <vector>

#include "metrics/motion/motion_field.h"

namespace Metric {

/// The vectors from which the searches of a block start. Keeps its memory when it is emptied.
class CandidateList {
public:
    void Clear() { vectors.clear(); }
    void Append(const MotionVector& vector) { vectors.push_back(vector); }

    /// Mean of each component, its remainder dropped; (0, 0) for an empty list.
    MotionVector Mean() const;

    /// The greatest distance from `center`, the greater of the two components' differences; 0 for an empty
    /// list.
    int Spread(const MotionVector& center) const;

    /// Drops every vector that is nearer than `distance` to an earlier one that is kept, by the sum of the
    /// two components' differences.
    void DropNearer(int distance);

    std::vector<MotionVector>::const_iterator begin() const { return vectors.begin(); }
    std::vector<MotionVector>::const_iterator end() const { return vectors.end(); }

private:
    std::vector<MotionVector> vectors;
};

}  // namespace Metric
