#include "kernels/half_pixels.h"

#include "kernels/bands.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/half_pixels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/pixels-inl.h"

#include <algorithm>
#include <cstddef>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

constexpr int kBefore = 2;     // pixels that the taps reach back
constexpr int kBehind = 3;     // and forward
constexpr int kColumns = 512;  // of a strip, so that a row of column sums stands on the stack

// The six samples at `step` apart around load(0), weighted: s0 the inner two, s1 the next, s2 the outer two.
// Within -2550 to 10710 for bytes.
template <class D, class Load>
HWY_INLINE hn::Vec<D> WeightedSum(D, const Load& load) {
    const auto inner = hn::Add(load(0), load(1));
    const auto next = hn::Add(load(-1), load(2));
    const auto outer = hn::Add(load(-2), load(3));
    const auto fifth = hn::Sub(hn::ShiftLeft<2>(inner), next);
    return hn::Add(hn::Add(fifth, hn::ShiftLeft<2>(fifth)), outer);
}

// (sum + half) >> kShift, limited to a byte.
template <int kShift, class D, class V>
HWY_INLINE void StoreRounded(D d, V sum, std::uint8_t* target) {
    const auto rounded = hn::ShiftRight<kShift>(hn::Add(sum, hn::Set(d, 1 << (kShift - 1))));
    const hn::Rebind<std::uint8_t, D> bytes;
    hn::StoreU(hn::DemoteTo(bytes, rounded), bytes, target);
}

HWY_INLINE void FilterAlongRow(const std::uint8_t* source, int width, std::uint8_t* target) {
    ForEachVector<std::int16_t>(width, [=](auto d, int x) HWY_ATTR {
        const auto sum = WeightedSum(d, [=](int offset) HWY_ATTR {
            return hn::PromoteTo(d, hn::LoadU(hn::Rebind<std::uint8_t, decltype(d)>(), source + x + offset));
        });
        StoreRounded<5>(d, sum, target + x);
    });
}

HWY_INLINE void SumColumns(const std::uint8_t* source, std::ptrdiff_t stride, int width, std::int16_t* sums) {
    ForEachVector<std::int16_t>(width, [=](auto d, int x) HWY_ATTR {
        const auto sum = WeightedSum(d, [=](int offset) HWY_ATTR {
            return hn::PromoteTo(
                d, hn::LoadU(hn::Rebind<std::uint8_t, decltype(d)>(), source + offset * stride + x));
        });
        hn::StoreU(sum, d, sums + x);
    });
}

HWY_INLINE void RoundSums(const std::int16_t* sums, int width, std::uint8_t* target) {
    ForEachVector<std::int16_t>(
        width, [=](auto d, int x) HWY_ATTR { StoreRounded<5>(d, hn::LoadU(d, sums + x), target + x); });
}

HWY_INLINE void FilterSums(const std::int16_t* sums, int width, std::uint8_t* target) {
    ForEachVector<std::int32_t>(width, [=](auto d, int x) HWY_ATTR {
        const auto sum = WeightedSum(d, [=](int offset) HWY_ATTR {
            return hn::PromoteTo(d, hn::LoadU(hn::Rebind<std::int16_t, decltype(d)>(), sums + x + offset));
        });
        StoreRounded<10>(d, sum, target + x);
    });
}

void FilterBand(const std::uint8_t* source, std::ptrdiff_t stride, int width, const Band& band,
                const HalfPixelPlanes& planes) {
    HWY_ALIGN std::int16_t sums[kBefore + kColumns + kBehind];
    for (int y = band.first; y < band.end; ++y) {
        for (int x = 0; x < width; x += kColumns) {
            const int count = std::min(kColumns, width - x);
            const std::ptrdiff_t offset = y * stride + x;
            FilterAlongRow(source + offset, count, planes.right + offset);
            SumColumns(source + offset - kBefore, stride, kBefore + count + kBehind, sums);
            RoundSums(sums + kBefore, count, planes.below + offset);
            FilterSums(sums + kBefore, count, planes.diagonal + offset);
        }
    }
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {
HWY_EXPORT(FilterBand);
}  // namespace

void HalfPixels(const std::uint8_t* source, int stride, int width, int height,
                const HalfPixelPlanes& planes) {
    const auto filterBand = HWY_DYNAMIC_DISPATCH(FilterBand);
    ForEachBand(width, height, [&](const Band& band) { filterBand(source, stride, width, band, planes); });
}

}  // namespace Kernels
#endif
