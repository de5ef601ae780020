#pragma once

#include <array>
#include <cstdint>

namespace Kernels {

inline constexpr int kSumClasses = 3;

/// Adds each pixel of a float plane to the sum of its class, one at a time in memory order: rows from the
/// top, pixels from the left.
///
/// As with `OrderedSum` the order is part of the values, and they are the chains' bits. `classes` has a byte
/// below 3 for each pixel. Strides are bytes from row to row; rows need no alignment. Allocates nothing; any
/// thread; works alone.
///
/// Cost  less than half of a chain, unless pixels are bigger than a 500th of their sum: then what a chain
///       takes.
using ClassSums = std::array<float, kSumClasses>;
void AddInOrder(ClassSums& sums, const float* plane, int stride, const std::uint8_t* classes, int classStride,
                int width, int height);

}  // namespace Kernels
