// Included once for each instruction set by the files that Highway compiles so.

#include "kernels/flat_ssim.h"

#if defined(KERNELS_FLAT_FORMULA_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef KERNELS_FLAT_FORMULA_INL_H
#undef KERNELS_FLAT_FORMULA_INL_H
#else
#define KERNELS_FLAT_FORMULA_INL_H
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using FlatFloats = hn::CappedTag<float, 16>;
using FlatVector = hn::Vec<FlatFloats>;

/// Numerator and denominator of the windows' contrast and structure, a window a lane.
struct FlatContrast {
    FlatVector above;
    FlatVector below;
};

HWY_INLINE FlatContrast ContrastOf(const FlatVector (&sums)[kWindowSums], float c2Constant) {
    const FlatFloats d;
    const auto c2 = hn::Set(d, c2Constant);
    const auto pixels = hn::Set(d, kFlatWindow * kFlatWindow);
    const auto xx = hn::Mul(sums[0], sums[0]);
    const auto yy = hn::Mul(sums[1], sums[1]);
    const auto q = hn::Sub(hn::Mul(sums[4], pixels), hn::Mul(sums[0], sums[1]));
    return {hn::Add(hn::Add(c2, q), q), hn::Add(hn::Add(hn::Sub(hn::Mul(sums[2], pixels), xx), c2),
                                                hn::Sub(hn::Mul(sums[3], pixels), yy))};
}

/// What makes the values of windows, a window a lane, from their sums.

struct FlatContrastStructureOf {
    float c2;

    HWY_INLINE FlatVector operator()(const FlatVector (&sums)[kWindowSums]) const {
        const FlatContrast contrast = ContrastOf(sums, c2);
        return hn::Div(contrast.above, contrast.below);
    }
};

struct FlatSSIMOf {
    float c1;
    float c2;

    HWY_INLINE FlatVector operator()(const FlatVector (&sums)[kWindowSums]) const {
        const auto luminance = hn::Set(FlatFloats(), c1);
        const auto p = hn::Mul(sums[0], sums[1]);
        const auto above = hn::Add(hn::Add(luminance, p), p);
        const auto below = hn::Add(hn::Add(hn::Mul(sums[0], sums[0]), luminance), hn::Mul(sums[1], sums[1]));
        const FlatContrast contrast = ContrastOf(sums, c2);
        return hn::Div(hn::Mul(above, contrast.above), hn::Mul(below, contrast.below));
    }
};

}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
