#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

/// Reverses the order of `height` rows of `rowBytes` bytes that start `stride` bytes apart.
inline void FlipRows(std::uint8_t* rows, std::size_t stride, std::size_t rowBytes, int height) {
    if (height < 1) return;
    std::uint8_t* last = rows + stride * static_cast<std::size_t>(height - 1);
    for (; rows < last; rows += stride, last -= stride) std::swap_ranges(rows, rows + rowBytes, last);
}
