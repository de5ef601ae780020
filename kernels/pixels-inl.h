// Included once for each instruction set by the files that Highway compiles so.

#if defined(KERNELS_PIXELS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef KERNELS_PIXELS_INL_H
#undef KERNELS_PIXELS_INL_H
#else
#define KERNELS_PIXELS_INL_H
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Calls use(d, x) along a row so that every pixel from 0 to `width` is one of the Lanes(d) pixels from an x
/// on, once: whole vectors first, then one pixel at a time. Nothing beyond the row's end is touched.
template <class Value, class Use>
HWY_INLINE void ForEachVector(int width, const Use& use) {
    const hn::ScalableTag<Value> d;
    const int step = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + step <= width; x += step) use(d, x);
    const hn::CappedTag<Value, 1> one;
    for (; x < width; ++x) use(one, x);
}

}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
