#pragma once

#include "kernels/border.h"
#include "kernels/ssim_planes.h"

#include <cstddef>

namespace Kernels {

/// The window under which means and variances are taken. Outside the pictures it sees what `border` says, 0
/// if that is `BorderConstant`.
struct GaussWindow {
    int size = 11;  // places a side, odd
    float sigma = 1.5f;
    BorderKind border = BorderReplicate;
};

// Two pictures to their map in one pass: the filtered planes are never written out. Each value has the same
// bits as by `Sqr`, `Mul`, five times `FilterGaussBorder` and the map of the same name.
//
// `scratch` has `GetGaussSSIMScratchSize` bytes, aligned for a pointer; its contents don't matter before or
// after. Any thread; big planes are shared out to a team.
//
// Cost  at 1080p on one thread 5.7 ms with AVX-512, 8.7 with AVX2; two threads take half. The separate
//       operations take 8.1 with AVX-512.

/// The map of `SSIMMap`.
void GaussSSIM(const SSIMPlanes& planes, const GaussWindow& window, float c1, float c2, void* scratch);

/// The map of `ContrastStructureMap`.
void GaussContrastStructure(const SSIMPlanes& planes, const GaussWindow& window, double c2, void* scratch);

std::size_t GetGaussSSIMScratchSize(int width, int height, int windowSize);

}  // namespace Kernels
