#pragma once

namespace Kernels {

/// Sorts in place, ascending, in the total order of IEEE 754: -0 before +0, NaNs at the two ends by their
/// sign. So the result has the same bits on every machine. Any thread, one thread.
void SortAscend(float* values, int count);

}  // namespace Kernels
