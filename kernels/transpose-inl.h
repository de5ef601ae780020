// Included once for each instruction set by the files that Highway compiles so.

#include <cstddef>

#if defined(KERNELS_TRANSPOSE_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef KERNELS_TRANSPOSE_INL_H
#undef KERNELS_TRANSPOSE_INL_H
#else
#define KERNELS_TRANSPOSE_INL_H
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// Transpose(d, rows) turns as many vectors of floats as they have lanes: lane x of rows[y] becomes lane y of
// rows[x].

#if HWY_TARGET == HWY_SCALAR

template <class D>
HWY_INLINE void Transpose(D, hn::Vec<D> (&)[1]) {}

#else

template <class D>
HWY_INLINE void Transpose(D d, hn::Vec<D> (&rows)[4]) {
    const hn::Repartition<double, D> pairs;
    const auto interleave = [=](auto first, auto second, auto& lower, auto& upper) HWY_ATTR {
        lower = hn::BitCast(pairs, hn::InterleaveLower(d, first, second));
        upper = hn::BitCast(pairs, hn::InterleaveUpper(d, first, second));
    };
    hn::VFromD<decltype(pairs)> lower[2], upper[2];
    interleave(rows[0], rows[1], lower[0], upper[0]);
    interleave(rows[2], rows[3], lower[1], upper[1]);
    rows[0] = hn::BitCast(d, hn::InterleaveLower(pairs, lower[0], lower[1]));
    rows[1] = hn::BitCast(d, hn::InterleaveUpper(pairs, lower[0], lower[1]));
    rows[2] = hn::BitCast(d, hn::InterleaveLower(pairs, upper[0], upper[1]));
    rows[3] = hn::BitCast(d, hn::InterleaveUpper(pairs, upper[0], upper[1]));
}

// Squares of 4 by 4 in the halves of the vectors, then these squares.
template <class D>
HWY_INLINE void Transpose(D d, hn::Vec<D> (&rows)[8]) {
    hn::Vec<D> upper[4] = {rows[0], rows[1], rows[2], rows[3]};
    hn::Vec<D> lower[4] = {rows[4], rows[5], rows[6], rows[7]};
    Transpose(d, upper);
    Transpose(d, lower);
    for (int i = 0; i < 4; ++i) {
        rows[i] = hn::ConcatLowerLower(d, lower[i], upper[i]);
        rows[i + 4] = hn::ConcatUpperUpper(d, lower[i], upper[i]);
    }
}

// A round moves the lowest bit of the lane's number to the top of the row's number and the other bits of both
// down by one. After as many rounds as a number has bits they have changed places.
template <class D>
HWY_INLINE void Transpose(D d, hn::Vec<D> (&rows)[16]) {
    for (int round = 1; round < 16; round *= 2) {
        hn::Vec<D> moved[16];
        for (int i = 0; i < 8; ++i) {
            moved[i] = hn::ConcatEven(d, rows[2 * i + 1], rows[2 * i]);
            moved[i + 8] = hn::ConcatOdd(d, rows[2 * i + 1], rows[2 * i]);
        }
        for (int i = 0; i < 16; ++i) rows[i] = moved[i];
    }
}

#endif

}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
