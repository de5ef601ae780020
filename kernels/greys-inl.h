// Included once for each instruction set by the files that Highway compiles so.

#include <cstdint>

#if defined(KERNELS_GREYS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef KERNELS_GREYS_INL_H
#undef KERNELS_GREYS_INL_H
#else
#define KERNELS_GREYS_INL_H
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// The low 8 bits of integers.
template <class D>
HWY_INLINE hn::Vec<hn::Rebind<std::uint8_t, D>> LowBytes(D integers, hn::Vec<D> values) {
    const hn::Rebind<std::uint8_t, D> bytes;
    return hn::DemoteTo(bytes, hn::And(values, hn::Set(integers, 0xFF)));
}

/// Grey of float values, as told at `PaintGrey`.
template <class D>
HWY_INLINE hn::Vec<hn::Rebind<std::uint8_t, D>> Greys(D d, hn::Vec<D> values) {
    const hn::Rebind<std::int32_t, D> integers;
    // What doesn't fit is converted differently from target to target. A NaN fails the comparison.
    const auto fits = hn::Lt(hn::Abs(values), hn::Set(d, 2147483648.0f));
    return LowBytes(integers, hn::ConvertTo(integers, hn::IfThenElseZero(fits, values)));
}

/// 255 - 255 times the values.
template <class D>
HWY_INLINE hn::Vec<D> Dissimilarity(D d, hn::Vec<D> similarity) {
    const auto white = hn::Set(d, 255.0f);
    return hn::Sub(white, hn::Mul(similarity, white));
}

}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
