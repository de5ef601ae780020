#pragma once

#include <cmath>

#include "gpu/kernels/ssim_passes.h"

// The two regions of 3SSIM, edges and the rest, and their weights.

namespace Gpu {

/// A Sobel magnitude above this, in both pictures, makes an edge.
constexpr float edgeThreshold = 30.6f;

/// 1 in `binarymap` for an edge, 0 otherwise.
struct cuda_ssim3_sobel {
    Texture orig, proc;
    float* binarymap;
    int width;

    GPU_FUNCTION void operator()(int x, int y) const {
        const bool isEdge = Magnitude(orig, x, y) > edgeThreshold && Magnitude(proc, x, y) > edgeThreshold;
        binarymap[ElementIndex(x, y, width)] = isEdge ? 1.0f : 0.0f;
    }

    /// Length of the gradient by the 3 by 3 operator, rows (1 2 1), (0 0 0), (-1 -2 -1) and their
    /// transpose. The order of the additions belongs to the measure.
    GPU_FUNCTION static float Magnitude(Texture plane, int x, int y) {
        const float upLeft = At(plane, x, y, -1, -1), up = At(plane, x, y, 0, -1);
        const float upRight = At(plane, x, y, 1, -1);
        const float left = At(plane, x, y, -1, 0), right = At(plane, x, y, 1, 0);
        const float downLeft = At(plane, x, y, -1, 1), down = At(plane, x, y, 0, 1);
        const float downRight = At(plane, x, y, 1, 1);
        const float Gy = ((2 * (up - down) + upLeft) + upRight) - downLeft - downRight;
        const float Gx = (upLeft - upRight) + 2 * (left - right) + downLeft - downRight;
        return std::sqrt(FusedMultiplyAdd(Gx, Gx, Gy * Gy));
    }

private:
    GPU_FUNCTION static float At(Texture plane, int x, int y, int i, int j) {
        const Point centre = PointAt<Along::X>(x, y, i);
        return ReadFloat(plane, centre.x, centre.y + static_cast<float>(j));
    }
};

/// Weighs the map's elements so that their sum is the frame's value. `w_edge` and `w_tex_smooth` are 1 by the
/// number of pixels of the regions; of a region without any it is infinite and meets no element.
struct cuda_ssim3_segment {
    float* ssim_map;
    const float* weights_map;  // above 0.5 at an edge
    double w_edge;
    double w_tex_smooth;
    int width;

    GPU_FUNCTION void operator()(int x, int y) const {
        const std::size_t element = ElementIndex(x, y, width);
        const double factor = weights_map[element] > 0.5f ? w_edge * 0.7 : w_tex_smooth * 0.3;
        ssim_map[element] = static_cast<float>(static_cast<double>(ssim_map[element]) * factor);
    }
};

}  // namespace Gpu
