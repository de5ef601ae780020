#pragma once

#include "kernels/border.h"
#include "kernels/ssim_planes.h"

#include <cstddef>

namespace Kernels {

/// The window under which means and variances are taken: so many places a side, a Gaussian.
inline constexpr int kGaussWindow = 11;
inline constexpr float kGaussSigma = 1.5f;

// Two pictures to the mean of their map and, unless `planes.map` is null, to the map itself, in one pass: the
// filtered planes are never written out. Outside the pictures the window sees what `border` says, 0 for
// `BorderConstant`.
//
// Numbers  each value has the same bits as by `Sqr`, `Mul`, five times `FilterGaussBorder` and the map's formula,
//          the mean those of `Mean`. Samples are 0 or above; c1 and c2 are above 0.
// Memory   `scratch` has `GetGaussSSIMScratchSize` bytes, aligned to 64; its contents don't matter before or
//          after. Any thread; big planes are shared out to a team.
// Cost     32 products and additions a pixel for each of five filters, where plain sums take 42 to 44, and
//          sixteen operations in double.

/// The map of `SSIMMap`.
double GaussSSIM(const SSIMPlanes& planes, BorderKind border, float c1, float c2, void* scratch);

/// The contrast and structure terms alone, (2 (mxy - mx my) + c2) / (mxx - mx^2 + myy - my^2 + c2), for the
/// finer levels of a multi-scale SSIM. The differences are made in float, the quotient in double.
double GaussContrastStructure(const SSIMPlanes& planes, BorderKind border, double c2, void* scratch);

std::size_t GetGaussSSIMScratchSize(int width, int height);

}  // namespace Kernels
