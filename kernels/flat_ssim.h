#pragma once

#include "kernels/ssim_planes.h"

#include <cstddef>

namespace Kernels {

/// Side of the flat window.
inline constexpr int kFlatWindow = 8;

/// What is summed over a window: x, y, x*x, y*y, x*y.
inline constexpr int kWindowSums = 5;

// Structural similarity under a flat window of 8 by 8 pixels, at every place wholly inside the pictures,
// which are no smaller than the window.
//
// Map      pixel (x, y) is the window over the columns x - 7 to x and the rows y to y + 7. Columns 0 to 6
//          repeat column 7; the last 7 rows aren't written.
// Formula  from the window's sums Sx, Sy, Sxx, Syy, Sxy, with P = Sx Sy and Q = 64 Sxy - P:
//            luminance               (c1 + P + P) / (Sx Sx + c1 + Sy Sy)
//            contrast and structure  (c2 + Q + Q) / ((64 Sxx - Sx Sx) + c2 + (64 Syy - Sy Sy))
//          c1 and c2 belong to sums: they are 4096 times those of means. Equal windows give 1.
// Numbers  float, in an order that is part of the value: for each column the running sum from the picture's
//          first row, less the same 8 rows above; along the row of these differences the sum of 8, then plus
//          the one that enters and less the one that leaves. Running sums down a big picture are rounded, so
//          values differ from those of exact sums. Vector code runs across columns or across rows only: the
//          same bits everywhere.
// Memory   `scratch` has `GetFlatSSIMScratchSize` bytes, aligned to 64; its contents don't matter before or
//          after. Allocates nothing. Any thread; works alone, since metrics run side by side.
// Cost     2.0 ms at 1080p with AVX-512, 2.6 with AVX2, 3.7 with SSE4.

/// Both terms: the product of the numerators by the product of the denominators.
void FlatSSIM(const SSIMPlanes& planes, float c1, float c2, void* scratch);

/// The contrast and structure terms alone.
void FlatContrastStructure(const SSIMPlanes& planes, float c2, void* scratch);

std::size_t GetFlatSSIMScratchSize(int width);

}  // namespace Kernels
