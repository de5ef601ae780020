#pragma once

#include "metrics/motion/candidate_list.h"
#include "metrics/motion/motion_field.h"

namespace Metric {

/// Appends what the blocks around a block know: of this frame the ones above, above left, above right and
/// left, by their vectors along the common side or corner; of the last frame the same block and the one
/// below, by their mean vectors. `previous` is null on the first frame.
void AppendNeighbours(CandidateList& candidates, const MotionField& field, const MotionField* previous,
                      int column, int row);

}  // namespace Metric
