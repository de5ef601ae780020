#pragma once

#include "kernels/border.h"

#include <cstddef>

namespace Kernels {

// 3 by 3 Sobel filters: the gradient across horizontal edges, with the rows (1, 2, 1), (0, 0, 0), (-1, -2, -1), and the
// one across vertical edges, with three times the row (-1, 0, 1), the middle one doubled.
//
// Each row of three is added from the left, the rows from the top, in float; a pixel of weight 2 is added twice.
// Outside the region lies what `border` says. Float planes; a stride is the bytes from row to row. Source and target may
// not overlap. `scratch` has `GetSobelScratchSize` bytes, aligned for a float; its contents don't matter before or
// after. Any thread; big planes are shared out to a team.

void FilterSobelHorizBorder(const float* source, int sourceStride, float* target, int targetStride, int width,
                            int height, BorderKind border, float borderValue, void* scratch);

void FilterSobelVertBorder(const float* source, int sourceStride, float* target, int targetStride, int width,
                           int height, BorderKind border, float borderValue, void* scratch);

std::size_t GetSobelScratchSize(int width, int height);

}  // namespace Kernels
