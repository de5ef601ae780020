#pragma once

#include "metrics/vqm_tables.h"

namespace Metric {

/// Pixels on each side of a VQM block.
constexpr int kVqmBlockSize = 8;

/// Compares one row of 8 by 8 blocks of two pictures in the DCT domain, as told at `CVQMMetric`.
///
/// `first` and `second` are 8 rows of `width` floats without gaps; `width` is a multiple of 8. `blockSums`
/// receives for each of the width / 8 blocks the sum of its 64 differences, added in float in row order.
/// Returns the greatest difference of the row. The same bits on every instruction set. Allocates nothing;
/// any thread.
float CompareVqmBlocks(const VqmTables& tables, const float* first, const float* second, int width,
                       float* blockSums);

}  // namespace Metric
