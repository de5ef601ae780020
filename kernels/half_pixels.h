#pragma once

#include <cstdint>

namespace Kernels {

/// Where the pictures between the pixels go. Rows lie as far apart as the source's.
struct HalfPixelPlanes {
    std::uint8_t* right;     // half a pixel to the right
    std::uint8_t* below;     // half a pixel down
    std::uint8_t* diagonal;  // both
};

/// Interpolates a picture of bytes half way between its pixels with the taps (1, -5, 20, 20, -5, 1) on the
/// offsets -2 to 3, along the row for `right` and along the column for `below`: limit((sum + 16) >> 5) to 0
/// to 255. `diagonal` has the taps along the row over the unrounded sums along the column: limit((sum + 512)
/// >> 10).
///
/// Reads up to 2 pixels before and 3 behind the picture on all sides. A stride is the bytes from row to row.
/// Integers throughout. Allocates nothing; any thread; big planes are shared out to a team.
void HalfPixels(const std::uint8_t* source, int stride, int width, int height, const HalfPixelPlanes& planes);

}  // namespace Kernels
