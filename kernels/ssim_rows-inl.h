// Included once for each instruction set by the files that Highway compiles so.

#include "kernels/ssim_map.h"

#if defined(KERNELS_SSIM_ROWS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef KERNELS_SSIM_ROWS_INL_H
#undef KERNELS_SSIM_ROWS_INL_H
#else
#define KERNELS_SSIM_ROWS_INL_H
#endif

#include "kernels/pixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// `SSIMMap` of one row, the first of each plane of `moments`.
HWY_INLINE void SSIMRow(const SSIMMoments& moments, float* map, int width, float c1, float c2) {
    const double c12 = c1 + c2;
    ForEachVector<double>(width, [=](auto d, int x) HWY_ATTR {
        const hn::Rebind<float, decltype(d)> f;
        const auto load = [=](const float* row) HWY_ATTR { return hn::PromoteTo(d, hn::LoadU(f, row + x)); };
        const auto mx = load(moments.meanX);
        const auto my = load(moments.meanY);
        const auto mxx = load(moments.squareX);
        const auto myy = load(moments.squareY);
        const auto mxy = load(moments.product);
        const auto c1s = hn::Set(d, double{c1});
        const auto c12s = hn::Set(d, c12);
        const auto vanishing = hn::Set(d, 2.220446e-16);

        const auto mxmy = hn::Mul(mx, my);
        const auto a = hn::Add(hn::Add(mxmy, c1s), mxmy);
        const auto b = hn::Add(hn::Add(hn::Mul(my, my), hn::Mul(mx, mx)), c1s);
        auto denominator = hn::Mul(hn::Sub(hn::Add(hn::Add(mxx, myy), c12s), b), b);
        auto numerator = hn::Mul(hn::Add(hn::Add(mxy, mxy), hn::Sub(c12s, a)), a);

        // One division serves all cases. The guarded ones, a / b or 1, don't occur in pictures.
        const auto guarded = hn::Lt(denominator, vanishing);
        if (HWY_UNLIKELY(!hn::AllFalse(d, guarded))) {
            const auto one = hn::And(guarded, hn::Lt(b, vanishing));
            numerator = hn::IfThenElse(one, hn::Set(d, 1.0), hn::IfThenElse(guarded, a, numerator));
            denominator = hn::IfThenElse(one, hn::Set(d, 1.0), hn::IfThenElse(guarded, b, denominator));
        }
        hn::StoreU(hn::DemoteTo(f, hn::Div(numerator, denominator)), f, map + x);
    });
}

/// The map of `GaussContrastStructure` in one row.
HWY_INLINE void ContrastStructureRow(const SSIMMoments& moments, float* map, int width, double c2) {
    ForEachVector<double>(width, [=](auto d, int x) HWY_ATTR {
        const hn::Rebind<float, decltype(d)> f;
        const auto mx = hn::LoadU(f, moments.meanX + x);
        const auto my = hn::LoadU(f, moments.meanY + x);
        const auto covariance = hn::Sub(hn::LoadU(f, moments.product + x), hn::Mul(mx, my));
        const auto varianceX = hn::Sub(hn::LoadU(f, moments.squareX + x), hn::Mul(mx, mx));
        const auto varianceY = hn::Sub(hn::LoadU(f, moments.squareY + x), hn::Mul(my, my));
        const auto c2s = hn::Set(d, c2);
        const auto numerator = hn::Add(hn::PromoteTo(d, hn::Add(covariance, covariance)), c2s);
        const auto denominator = hn::Add(hn::PromoteTo(d, hn::Add(varianceX, varianceY)), c2s);
        hn::StoreU(hn::DemoteTo(f, hn::Div(numerator, denominator)), f, map + x);
    });
}

}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
