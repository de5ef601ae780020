#pragma once

namespace Kernels {

/// Mean of the `smallest` smallest of `count` floats; none is a NaN, and 0 < smallest <= count. Sorts
/// nothing.
///
/// The sum is taken in double: of those below the greatest of them, value i goes to sum i % kSumLanes and the
/// sums are added in ascending order; then as many times the greatest as are left. So it doesn't depend on
/// how that one was found. `scratch` holds `count` floats; its contents don't matter before or after.
/// Allocates nothing; any thread.
double MeanOfSmallest(const float* values, int count, int smallest, float* scratch);

}  // namespace Kernels
