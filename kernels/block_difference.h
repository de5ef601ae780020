#pragma once

#include <cstdint>

namespace Kernels {

/// Sum of the absolute differences of two square blocks of bytes, `side` 4, 8 or 16 pixels.
///
/// `block` is one of them. The other is `first`, or where `second` isn't null the mean (first + second + 1) /
/// 2, whose rows both lie `stride` bytes apart. Rows need no alignment; nothing beside the blocks is read.
/// Any thread; works alone.
int BlockDifference(const std::uint8_t* block, int blockStride, const std::uint8_t* first,
                    const std::uint8_t* second, int stride, int side);

}  // namespace Kernels
