// Included once for each instruction set by the files that Highway compiles so.

#include "kernels/rows.h"
#include "kernels/sobel_squares.h"

#include <algorithm>
#include <cstddef>

#if defined(KERNELS_SOBEL_SQUARES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef KERNELS_SOBEL_SQUARES_INL_H
#undef KERNELS_SOBEL_SQUARES_INL_H
#else
#define KERNELS_SOBEL_SQUARES_INL_H
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// So many rows are made together, going down: each row of the plane serves three of them.
inline constexpr int kSobelRows = 8;

using SobelFloats = hn::CappedTag<float, 16>;
using SobelVector = hn::Vec<SobelFloats>;
inline constexpr int kSobelLanes = static_cast<int>(hn::MaxLanes(SobelFloats()));

/// What the filters take from three pixels side by side in a row.
struct SobelThird {
    SobelVector smooth;
    SobelVector slope;
};

/// A vector that is needed more than once: GCC would rather load it anew each time, and a load that lies
/// between two cache lines takes twice as long. That costs a quarter of the time here.
HWY_INLINE SobelVector LoadOnce(const float* pixels) {
    auto vector = hn::LoadU(SobelFloats(), pixels);
#if HWY_COMPILER_GCC_ACTUAL && HWY_ARCH_X86
    asm("" : "+v"(vector.raw));
#endif
    return vector;
}

/// From a pointer to the left neighbours.
HWY_INLINE SobelThird TakeThird(const float* left) {
    const auto first = LoadOnce(left);
    const auto middle = LoadOnce(left + 1);
    const auto last = LoadOnce(left + 2);
    return {hn::Add(hn::Add(hn::Add(first, middle), middle), last), hn::Sub(last, first)};
}

/// The same beside the plane's edge: column `x` of row `y`, 0 for pixels outside.
template <int kCount>
HWY_INLINE SobelThird TakeThirdAtEdge(const SobelPlanes<kCount>& planes, int plane, int x, int y) {
    HWY_ALIGN float pixels[kSobelLanes + 2] = {};
    if (y >= 0 && y < planes.height) {
        const float* const row = Row(planes.pixels[plane], planes.stride, y);
        const int begin = std::max(x - 1, 0);
        std::copy(row + begin, row + std::min(x + kSobelLanes + 1, planes.width), pixels + (begin - (x - 1)));
    }
    return TakeThird(pixels);
}

/// The squares of kSobelLanes columns from `x` on for the rows from `first` to before `end`:
/// thirdOf(plane, y) takes what is needed of a row, use(x, y, squares) gets an array of each plane's squares.
template <int kCount, class ThirdOf, class Use>
HWY_INLINE void SquareColumns(int x, int first, int end, const ThirdOf& thirdOf, const Use& use) {
    SobelThird above[kCount], centre[kCount];
    for (int plane = 0; plane < kCount; ++plane) {
        above[plane] = thirdOf(plane, first - 1);
        centre[plane] = thirdOf(plane, first);
    }
    for (int y = first; y < end; ++y) {
        SobelVector squares[kCount];
        for (int plane = 0; plane < kCount; ++plane) {
            const SobelThird below = thirdOf(plane, y + 1);
            const auto slopes =
                hn::Add(hn::Add(above[plane].slope, centre[plane].slope), centre[plane].slope);
            const auto vert = hn::Add(slopes, below.slope);
            const auto horiz = hn::Sub(above[plane].smooth, below.smooth);
            squares[plane] = hn::Add(hn::Mul(vert, vert), hn::Mul(horiz, horiz));
            above[plane] = centre[plane];
            centre[plane] = below;
        }
        use(x, y, squares);
    }
}

/// Calls use(x, y, squares) for the rows from `first` to before `end`, in an order of its own: squares[i] has
/// those of plane i from column x on, kSobelLanes of them; what lies beyond the last column means nothing.
template <int kCount, class Use>
HWY_INLINE void ForEachSobelSquare(const SobelPlanes<kCount>& planes, int first, int end, const Use& use) {
    for (int y = first; y < end; y += kSobelRows) {
        const int last = std::min(y + kSobelRows, end);
        const bool rowsInside = y > 0 && y + kSobelRows < planes.height;
        for (int x = 0; x < planes.width; x += kSobelLanes) {
            if (rowsInside && x > 0 && x + kSobelLanes < planes.width) {
                const auto inside = [&](int plane, int row) HWY_ATTR {
                    return TakeThird(Row(planes.pixels[plane], planes.stride, row) + x - 1);
                };
                SquareColumns<kCount>(x, y, last, inside, use);
            } else {
                const auto atEdge = [&](int plane, int row)
                                        HWY_ATTR { return TakeThirdAtEdge(planes, plane, x, row); };
                SquareColumns<kCount>(x, y, last, atEdge, use);
            }
        }
    }
}

}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
