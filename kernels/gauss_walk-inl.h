// Included once for each instruction set by the files that Highway compiles so.

#include "kernels/gauss_blocks.h"

#if defined(KERNELS_GAUSS_WALK_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef KERNELS_GAUSS_WALK_INL_H
#undef KERNELS_GAUSS_WALK_INL_H
#else
#define KERNELS_GAUSS_WALK_INL_H
#endif

#include "kernels/transpose-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using WalkFloats = hn::CappedTag<float, kGaussBlock>;
inline constexpr int kWalkLanes = static_cast<int>(hn::MaxLanes(WalkFloats()));

// The filter walks over lines and puts each of them at once into all sums that weigh it: that takes six
// products, since the taps are the same on both sides of the middle, and ten additions, where summing up
// eleven lines for each result takes eleven of both. Every number has a sum of its own, and the lines enter
// in the order of the taps, so the bits are those of the plain sums.

/// Walks kWalkLanes numbers wide over the lines of `in`; line i of `out` is the sum that line i completes,
/// whose middle is `kGaussReach` lines before it.
HWY_NOINLINE void WalkLanes(const float* HWY_RESTRICT taps, float* HWY_RESTRICT unfinished,
                            const float* HWY_RESTRICT in, float* HWY_RESTRICT out) {
    static_assert(kGaussWindow == 11);
    const WalkFloats d;
    const auto sum = [=](int i) HWY_ATTR { return hn::Load(d, unfinished + i * kGaussBlock); };
    auto sum0 = sum(0), sum1 = sum(1), sum2 = sum(2), sum3 = sum(3), sum4 = sum(4);
    auto sum5 = sum(5), sum6 = sum(6), sum7 = sum(7), sum8 = sum(8), sum9 = sum(9);
    const auto tap0 = hn::Set(d, taps[0]), tap1 = hn::Set(d, taps[1]), tap2 = hn::Set(d, taps[2]);
    const auto tap3 = hn::Set(d, taps[3]), tap4 = hn::Set(d, taps[4]), tap5 = hn::Set(d, taps[5]);
    for (int i = 0; i < kGaussBlock; ++i) {
        const auto line = hn::Load(d, in + i * kGaussBlock);
        const auto product0 = hn::Mul(tap0, line), product1 = hn::Mul(tap1, line);
        const auto product2 = hn::Mul(tap2, line), product3 = hn::Mul(tap3, line);
        const auto product4 = hn::Mul(tap4, line), product5 = hn::Mul(tap5, line);
        hn::Store(hn::Add(sum0, product0), d, out + i * kGaussBlock);
        sum0 = hn::Add(sum1, product1);
        sum1 = hn::Add(sum2, product2);
        sum2 = hn::Add(sum3, product3);
        sum3 = hn::Add(sum4, product4);
        sum4 = hn::Add(sum5, product5);
        sum5 = hn::Add(sum6, product4);
        sum6 = hn::Add(sum7, product3);
        sum7 = hn::Add(sum8, product2);
        sum8 = hn::Add(sum9, product1);
        sum9 = product0;
    }
    const auto keep = [=](int i, auto value) HWY_ATTR { hn::Store(value, d, unfinished + i * kGaussBlock); };
    keep(0, sum0), keep(1, sum1), keep(2, sum2), keep(3, sum3), keep(4, sum4);
    keep(5, sum5), keep(6, sum6), keep(7, sum7), keep(8, sum8), keep(9, sum9);
}

/// The same over whole lines.
HWY_INLINE void WalkBlock(const float* taps, UnfinishedSums& unfinished, const GaussLines& in,
                          GaussLines& out) {
    for (int lane = 0; lane < kGaussBlock; lane += kWalkLanes)
        WalkLanes(taps, unfinished[0] + lane, in[0] + lane, out[0] + lane);
}

/// Makes columns of rows that lie `stride` bytes apart.
HWY_INLINE void TurnBlock(const float* in, int stride, GaussLines& out) {
    const WalkFloats d;
    for (int y = 0; y < kGaussBlock; y += kWalkLanes) {
        for (int x = 0; x < kGaussBlock; x += kWalkLanes) {
            hn::Vec<WalkFloats> square[kWalkLanes];
            for (int i = 0; i < kWalkLanes; ++i) square[i] = hn::LoadU(d, Row(in, stride, y + i) + x);
            Transpose(d, square);
            for (int i = 0; i < kWalkLanes; ++i) hn::Store(square[i], d, out[x + i] + y);
        }
    }
}

}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
