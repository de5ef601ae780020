#pragma once

#include "kernels/border.h"

#include <cstddef>

namespace Kernels {

/// Gaussian filter with a square window of `kernelSize` (odd) places a side, as a horizontal pass followed by
/// a vertical one over its rows. Both passes add tap times pixel to 0 in float, in ascending order of the
/// taps and without fused operations; the taps are those of `GaussTaps`. Outside the region lies what
/// `border` says.
///
/// Float planes; a stride is the bytes from row to row. Source and target may not overlap. `scratch` has
/// `GetGaussScratchSize` bytes, aligned for a pointer; its contents don't matter before or after. Any thread;
/// big planes are shared out to a team.
void FilterGaussBorder(const float* source, int sourceStride, float* target, int targetStride, int width,
                       int height, int kernelSize, float sigma, BorderKind border, float borderValue,
                       void* scratch);

std::size_t GetGaussScratchSize(int width, int height, int kernelSize);

}  // namespace Kernels
