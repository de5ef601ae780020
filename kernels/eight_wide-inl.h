// Included once for each instruction set by the files that Highway compiles so.

#include <array>
#include <cstddef>
#include <cstdint>

#if defined(KERNELS_EIGHT_WIDE_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef KERNELS_EIGHT_WIDE_INL_H
#undef KERNELS_EIGHT_WIDE_INL_H
#else
#define KERNELS_EIGHT_WIDE_INL_H
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// A row of numbers that comes a vector at a time, delayed by `kBy` numbers, 1, 2 or 4. Before the first come
/// zeros. D has up to 16 lanes of 32 bits.
template <class D, int kBy>
class Delayed {
public:
#if HWY_TARGET == HWY_SCALAR

    HWY_INLINE hn::Vec<D> Next(D d, hn::Vec<D> now) {
        const auto delayed = hn::Set(d, last[next]);
        last[next] = hn::GetLane(now);
        next = (next + 1) % kBy;
        return delayed;
    }

private:
    std::array<hn::TFromD<D>, kBy> last = {};
    std::size_t next = 0;

#else

    HWY_INLINE Delayed()
        : before(hn::Zero(D())) {}  // not left to the compiler, which forgets the instruction set

    HWY_INLINE hn::Vec<D> Next(D d, hn::Vec<D> now) {
#if HWY_TARGET <= HWY_AVX3
        // Highway has no shift across all lanes: this is one instruction instead of a permutation and a
        // choice.
        const hn::Rebind<std::int32_t, D> integers;
        const auto delayed = hn::Vec<decltype(integers)>{
            _mm512_alignr_epi32(hn::BitCast(integers, now).raw, hn::BitCast(integers, before).raw, 16 - kBy)};
        before = now;
        return hn::BitCast(d, delayed);
#else
        // The block of four numbers before each block of `now`.
        hn::Vec<D> blocksBefore = before;
        if constexpr (kLanes == 8) blocksBefore = hn::ConcatLowerUpper(d, now, before);
        before = now;
        if constexpr (kBy == 4) {
            return blocksBefore;
        } else {
            return hn::CombineShiftRightBytes<16 - 4 * kBy>(d, now, blocksBefore);
        }
#endif
    }

private:
    static constexpr int kLanes = static_cast<int>(hn::MaxLanes(D()));
    static_assert(kLanes == 4 || kLanes == 8 || kLanes == 16);

    hn::Vec<D> before;

#endif
};

/// The sums of each number of a row with the seven before it, zeros before the first, from pairs, of these
/// fours, and of these eights: exact numbers, since this order isn't that of any plain sum.
template <class D>
class EightWide {
public:
    HWY_INLINE EightWide() {}

    HWY_INLINE hn::Vec<D> Next(hn::Vec<D> now) {
        const D d;
        const auto pairs = hn::Add(now, byOne.Next(d, now));
        const auto fours = hn::Add(pairs, byTwo.Next(d, pairs));
        return hn::Add(fours, byFour.Next(d, fours));
    }

private:
    Delayed<D, 1> byOne;
    Delayed<D, 2> byTwo;
    Delayed<D, 4> byFour;
};

}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
