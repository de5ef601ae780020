#pragma once

#include "metrics/motion/block_search.h"
#include "metrics/motion/candidate_list.h"
#include "metrics/motion/cost_statistics.h"
#include "metrics/motion/motion_field.h"

namespace Metric {

/// The motion of the 16 by 16 block with its first pixel at (x, y): searches it whole, and where the match is
/// worse than expected its quadrants, and of those the bad ones' 4 by 4 blocks; then keeps what costs less.
///
/// `candidates` comes with what is known around the block and goes with what the searches left of it.
BlockMotion DecideBlock(BlockSearch& search, CandidateList& candidates, int x, int y,
                        const CostThresholds& thresholds);

}  // namespace Metric
