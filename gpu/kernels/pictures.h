#pragma once

#include "gpu/kernels/portable.h"
#include "gpu/kernels/texture.h"

// What the visualizations show: dark where the pictures agree, 255 for a similarity of 0, more below it.

namespace Gpu {

constexpr int kLevels = 5;  // of MSSSIM

GPU_FUNCTION inline float Darkness(float similarity) {
    return 255 - similarity * 255;
}

struct cuda_ssim_vis {
    float* ssim_map;
    int width;

    GPU_FUNCTION void operator()(int x, int y) const {
        float& element = ssim_map[ElementIndex(x, y, width)];
        element = Darkness(element);
    }
};

/// What isn't an edge is shown at 3/7 of its brightness, as it weighs 0.3 and an edge 0.7.
struct cuda_ssim3_vis {
    float* ssim_map;
    const float* weights_map;  // above 0.5 at an edge
    int width;

    GPU_FUNCTION void operator()(int x, int y) const {
        const std::size_t element = ElementIndex(x, y, width);
        const float factor = weights_map[element] > 0.5f ? 1 : 0.428571433f;
        ssim_map[element] = factor * Darkness(ssim_map[element]);
    }
};

/// The product of the levels' maps, each to the power of its weight and stretched over `width` by `height`,
/// the aligned size of the finest level. `maps` have normalized coordinates and the filter `Linear`.
struct cuda_msssim_vis {
    Texture maps[kLevels];
    float* ssim_map;
    float weights[kLevels];
    int width;
    int height;

    GPU_FUNCTION void operator()(int x, int y) const {
        const float u = (static_cast<float>(x) + 0.5f) / static_cast<float>(width);
        const float v = (static_cast<float>(y) + 0.5f) / static_cast<float>(height);
        float product = 1;
        GPU_UNROLL
        for (int level = 0; level < kLevels; ++level)
            product = Power(ReadFloat(maps[level], u, v), weights[level]) * product;
        ssim_map[ElementIndex(x, y, width)] = Darkness(product);
    }
};

}  // namespace Gpu
