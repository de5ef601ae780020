#pragma once

#include "kernels/border.h"

#include <cstddef>

namespace Kernels {

// 3 by 3 Sobel filters. The horizontal one answers to horizontal edges, the vertical one to vertical edges:
//
//      1  2  1        -1  0  1
//      0  0  0        -2  0  2
//     -1 -2 -1        -1  0  1
//
// Each row of three is added from the left, the rows from the top, in float; what counts twice is added
// twice. Outside the region lies what `border` says.
//
// Float planes; a stride is the bytes from row to row. Source and target may not overlap. `scratch` has
// `GetSobelScratchSize` bytes, aligned for a float; its contents don't matter before or after. Any thread;
// big planes are shared out to a team.

void FilterSobelHorizBorder(const float* source, int sourceStride, float* target, int targetStride, int width,
                            int height, BorderKind border, float borderValue, void* scratch);

void FilterSobelVertBorder(const float* source, int sourceStride, float* target, int targetStride, int width,
                           int height, BorderKind border, float borderValue, void* scratch);

std::size_t GetSobelScratchSize(int width, int height);

}  // namespace Kernels
