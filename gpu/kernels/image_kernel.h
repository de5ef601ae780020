#pragma once

#include <variant>

#include "gpu/kernels/edges.h"
#include "gpu/kernels/pictures.h"
#include "gpu/kernels/ssim_passes.h"

namespace Gpu {

/// Every kernel that computes an image, with its arguments. A backend runs whichever it is given, so that a
/// new kernel is entered here and nowhere else.
using ImageKernel = std::variant<FirstPass<Along::X>, FirstPass<Along::Y>, SecondPass<Along::X>,
                                 SecondPass<Along::Y>, cuda_msssim_columns, cuda_ssim_vis, cuda_msssim_vis,
                                 cuda_ssim3_vis, cuda_ssim3_sobel, cuda_ssim3_segment>;

/// The elements that a kernel runs for, one thread each, and the threads of a block. A grid covers the size
/// with whole blocks; the threads beyond it do nothing.
struct LaunchShape {
    int width = 0;
    int height = 0;
    int blockWidth = 16;
    int blockHeight = 16;
};

}  // namespace Gpu
