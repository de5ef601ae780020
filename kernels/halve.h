#pragma once

#include <cstddef>
#include <cstdint>

namespace Kernels {

/// Half the picture a side: each target pixel is the mean of a square of 2 by 2 source pixels, added in float
/// in the order top left, top right, bottom left, bottom right.
///
/// `width` and `height` are the target's; of the source twice as many a side are read. A stride is bytes from
/// row to row; rows need no alignment. Source and target don't overlap. Allocates nothing; any thread; works
/// alone.
void Halve(const float* source, int sourceStride, float* target, int targetStride, int width, int height);

/// The same of a plane of bytes.
void HalveBytes(const std::uint8_t* source, std::ptrdiff_t sourceStride, float* target, int targetStride,
                int width, int height);

}  // namespace Kernels
