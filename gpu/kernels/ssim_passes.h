#pragma once

#include "gpu/kernels/gauss_taps.h"
#include "gpu/kernels/portable.h"
#include "gpu/kernels/texture.h"

// SSIM of two pictures at every pixel, under a Gaussian window of 11 by 11 taken apart into two passes: the
// first adds up the window's samples along one axis, the second adds up those sums along the other and
// evaluates the formula.
//
// Every kernel of an image is a struct of its arguments; its call operator does the element (x, y). Buffers
// have rows of `width` elements, the aligned width of the level. A read beyond the picture gives its
// nearest sample.

namespace Gpu {

// SSIM's stabilisers for a peak of 255, whatever the images' own peak.
constexpr float kC1 = 6.5025f;   // (0.01 * 255)^2
constexpr float kC2 = 58.5225f;  // (0.03 * 255)^2

enum class Along { X, Y };

/// A point in a texture. Element (x, y) has its centre at the halves.
struct Point {
    float x;
    float y;
};

/// `k` elements from the centre of the element (x, y).
template <Along along>
GPU_FUNCTION Point PointAt(int x, int y, int k) {
    const Point centre = {static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f};
    const float way = static_cast<float>(k);
    return along == Along::X ? Point{centre.x + way, centre.y} : Point{centre.x, centre.y + way};
}

/// The weighted sums of two pictures' samples a and b: of a, a * a, b, b * b in this order, and of a * b.
struct WindowSums {
    Float4 mu = {0, 0, 0, 0};
    float product = 0;

    GPU_FUNCTION void AddSamples(float tap, float a, float b) { Add(tap, {a, a * a, b, b * b}, a * b); }

    GPU_FUNCTION void Add(float tap, const Float4& terms, float productTerm) {
        mu.x = FusedMultiplyAdd(tap, terms.x, mu.x);
        mu.y = FusedMultiplyAdd(tap, terms.y, mu.y);
        mu.z = FusedMultiplyAdd(tap, terms.z, mu.z);
        mu.w = FusedMultiplyAdd(tap, terms.w, mu.w);
        product = FusedMultiplyAdd(tap, productTerm, product);
    }

    /// SSIM from the sums of a whole window. The order of the operations belongs to the measure.
    GPU_FUNCTION float Ssim(float C1, float C2) const {
        const float mx = mu.x, mxx = mu.y, my = mu.z, myy = mu.w;
        const float cov = product - mx * my;
        const float s = C2 + (cov + cov);
        const float p = FusedMultiplyAdd(my, mx + mx, C1);
        const float q = C1 + FusedMultiplyAdd(mx, mx, my * my);
        const float r = C2 + ((myy + (mxx - mx * mx)) - my * my);
        return s * p / (q * r);
    }
};

/// The sums along one axis, of the pictures `orig` and `proc`.
template <Along along>
struct FirstPass {
    Texture orig, proc;
    Float4* muX;
    float* muXY;
    int width;
    GaussTaps taps;

    GPU_FUNCTION void operator()(int x, int y) const {
        WindowSums sums;
        GPU_UNROLL
        for (int k = -kWindowRadius; k <= kWindowRadius; ++k) {
            const Point at = PointAt<along>(x, y, k);
            sums.AddSamples(taps[k], ReadFloat(orig, at.x, at.y), ReadFloat(proc, at.x, at.y));
        }
        muX[ElementIndex(x, y, width)] = sums.mu;
        muXY[ElementIndex(x, y, width)] = sums.product;
    }
};

/// The map, from the first pass's sums in `mix` and `XY`.
template <Along along>
struct SecondPass {
    Texture mix, XY;
    float* ssim_map;
    int width;
    GaussTaps taps;
    float C1 = kC1;
    float C2 = kC2;

    GPU_FUNCTION void operator()(int x, int y) const {
        WindowSums sums;
        GPU_UNROLL
        for (int k = -kWindowRadius; k <= kWindowRadius; ++k) {
            const Point at = PointAt<along>(x, y, k);
            sums.Add(taps[k], ReadFloat4(mix, at.x, at.y), ReadFloat(XY, at.x, at.y));
        }
        ssim_map[ElementIndex(x, y, width)] = sums.Ssim(C1, C2);
    }
};

using cuda_ssim_columns = FirstPass<Along::Y>;
using cuda_ssim_rows = SecondPass<Along::X>;
using cuda_ssim3_rows = FirstPass<Along::X>;
using cuda_ssim3_columns = SecondPass<Along::Y>;
using cuda_msssim_columns_first = FirstPass<Along::Y>;
using cuda_msssim_rows = SecondPass<Along::X>;

/// The first pass of a level above the finest. It reads the finer level, `orig` and `proc` with the filter
/// `Linear`, at the corner between four texels, so that each read is the mean of a block of 2 by 2. The
/// window covers 11 rows of the finer level. On the way the level's own pictures fall out, `new_orig` and
/// `new_proc`.
///
/// Of samples with 8 bits behind the point every such mean is exact, whatever the order in which a card
/// adds.
struct cuda_msssim_columns {
    Texture orig, proc;
    Float4* muX;
    float* muXY;
    float* new_orig;
    float* new_proc;
    int width;
    GaussTaps taps;

    GPU_FUNCTION void operator()(int x, int y) const {
        const float cornerX = static_cast<float>(2.0 * x + 1.0);
        const float cornerY = static_cast<float>(2.0 * y + 1.0);
        WindowSums sums;
        GPU_UNROLL
        for (int k = -kWindowRadius; k <= kWindowRadius; ++k) {
            const float row = cornerY + static_cast<float>(k);
            sums.AddSamples(taps[k], ReadFloat(orig, cornerX, row), ReadFloat(proc, cornerX, row));
        }
        const std::size_t element = ElementIndex(x, y, width);
        muX[element] = sums.mu;
        muXY[element] = sums.product;
        new_orig[element] = ReadFloat(orig, cornerX, cornerY);
        new_proc[element] = ReadFloat(proc, cornerX, cornerY);
    }
};

}  // namespace Gpu
