// Included once for each instruction set by the files that Highway compiles so.

#include "kernels/bands.h"
#include "kernels/border.h"
#include "kernels/gauss_strips.h"
#include "kernels/gauss_taps.h"
#include "kernels/rows.h"

#include <hwy/cache_control.h>

#include <algorithm>
#include <array>

#if defined(KERNELS_GAUSS_STRIPS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef KERNELS_GAUSS_STRIPS_INL_H
#undef KERNELS_GAUSS_STRIPS_INL_H
#else
#define KERNELS_GAUSS_STRIPS_INL_H
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// target[x] = 0 + taps[0] * rows[0][x] + taps[1] * rows[1][x] + ..., for `width` columns, a multiple of
/// kStripWidth.
HWY_INLINE void WeighRows(const float* HWY_RESTRICT taps, int tapCount, const float* const* HWY_RESTRICT rows,
                          int width, float* HWY_RESTRICT target) {
    constexpr int kSums = 8;  // so many at a time hide the latency of the additions
    const hn::CappedTag<float, kStripWidth / kSums> d;
    const int step = static_cast<int>(hn::Lanes(d));
    for (int x = 0; x < width; x += kSums * step) {
        decltype(hn::Zero(d)) sums[kSums];
        std::fill_n(sums, kSums, hn::Zero(d));
        for (int i = 0; i < tapCount; ++i) {
            const auto tap = hn::Set(d, taps[i]);
            const float* row = rows[i] + x;
            for (int k = 0; k < kSums; ++k)
                sums[k] = hn::Add(sums[k], hn::Mul(tap, hn::LoadU(d, row + k * step)));
        }
        for (int k = 0; k < kSums; ++k) hn::StoreU(sums[k], d, target + x + k * step);
    }
}

/// target[x] = 0 + taps[0] * line[x] + taps[1] * line[x + 1] + ..., for the width of a strip.
HWY_INLINE void WeighLine(const float* HWY_RESTRICT taps, int tapCount, const float* HWY_RESTRICT line,
                          float* HWY_RESTRICT target) {
    constexpr int kSums = HWY_MAX_BYTES >= 64 ? 4 : 8;
    const hn::CappedTag<float, kStripWidth / kSums> d;
    const int step = static_cast<int>(hn::Lanes(d));
    for (int x = 0; x < kStripWidth; x += kSums * step) {
        decltype(hn::Zero(d)) sums[kSums];
        std::fill_n(sums, kSums, hn::Zero(d));
        const auto load = [&](int i, int k) HWY_ATTR { return hn::LoadU(d, line + x + i + k * step); };
        const auto add = [&](int i, const auto& pixels) HWY_ATTR {
            const auto tap = hn::Set(d, taps[i]);
            for (int k = 0; k < kSums; ++k) sums[k] = hn::Add(sums[k], hn::Mul(tap, pixels(k)));
        };
        int i = 0;
#if HWY_MAX_BYTES >= 64
        // Such vectors are as long as a cache line: every load between two lines costs two. So three of four
        // are put together from the two around them, each block of 4 floats of `next` following upon the same
        // block of `now`. That saves a sixth of the time of `GaussSSIM`; shorter vectors gain nothing.
        decltype(hn::Zero(d)) now[kSums], next[kSums];
        for (int k = 0; k < kSums; ++k) now[k] = load(0, k);
        for (; i + 4 <= tapCount; i += 4) {
            for (int k = 0; k < kSums; ++k) next[k] = load(i + 4, k);
            add(i, [&](int k) HWY_ATTR { return now[k]; });
            add(i + 1, [&](int k) HWY_ATTR { return hn::CombineShiftRightBytes<4>(d, next[k], now[k]); });
            add(i + 2, [&](int k) HWY_ATTR { return hn::CombineShiftRightBytes<8>(d, next[k], now[k]); });
            add(i + 3, [&](int k) HWY_ATTR { return hn::CombineShiftRightBytes<12>(d, next[k], now[k]); });
            std::copy_n(next, kSums, now);
        }
#endif
        for (; i < tapCount; ++i) add(i, [&](int k) HWY_ATTR { return load(i, k); });
        for (int k = 0; k < kSums; ++k) hn::StoreU(sums[k], d, target + x + k * step);
    }
}

/// Fetches the part of the row below row y that a strip wants next: the processor doesn't foresee a way down.
HWY_INLINE void FetchBelow(const StripFilter& filter, const float* plane, int stride, int y, int first) {
    const float* row = Row(plane, stride, std::min(y + 1, filter.height - 1));
    const int end = std::min(first + GaussScratch::LineLength(filter.kernelSize), filter.width);
    for (int x = std::max(first, 0); x < end; x += 16) hwy::Prefetch(row + x);
}

/// The pixels from column `first` on that a strip's window sees in row y of a plane. They are read in place
/// when all lie inside the picture, else put into `line`.
HWY_INLINE const float* WindowLine(const StripFilter& filter, const float* plane, int stride, int y,
                                   int first, float* line) {
    FetchBelow(filter, plane, stride, y, first);
    const float* row = Row(plane, stride, y);
    const int count = GaussScratch::LineLength(filter.kernelSize);
    if (first >= 0 && first + count <= filter.width) return row + first;

    const int begin = std::clamp(-first, 0, count);
    const int end = std::clamp(filter.width - first, begin, count);
    const bool replicate = filter.border == BorderReplicate;
    std::fill(line, line + begin, replicate ? row[0] : filter.borderValue);
    std::copy(row + first + begin, row + first + end, line + begin);
    std::fill(line + end, line + count, replicate ? row[filter.width - 1] : filter.borderValue);
    return line;
}

/// Points tapRows[i] to the horizontally filtered rows that tap i weighs for row y.
inline void FindTapRows(const StripFilter& filter, const GaussScratch& scratch, int y,
                        const float** tapRows) {
    const int size = filter.kernelSize;
    const int top = y - size / 2;
    const int ringStart = std::max(top, 0) / size * size;  // a row of slot 0, not below the others
    for (int i = 0; i < size; ++i) {
        const int nearest = std::clamp(top + i, 0, filter.height - 1);
        const int slot = nearest - ringStart < size ? nearest - ringStart : nearest - ringStart - size;
        const bool fromRing = nearest == top + i || filter.border == BorderReplicate;
        tapRows[i] = scratch.RingRows(fromRing ? slot : size);
    }
}

/// Filters the rows of a band of `kQuantities` planes of one size, or of what makeLines makes of them.
///
/// makeLines(y, first, lines) lets lines[q] point to the pixels from column `first` on of row y of quantity
/// q, as many as a `GaussScratch::Line` has. useRows(y, x, count, filtered) gets the `count` columns from x
/// on of row y, filtered, quantity q at filtered + q * kStripWidth. The strips come from the left, their rows
/// from the top.
template <int kQuantities, class MakeLines, class UseRows>
HWY_INLINE void FilterStrips(const StripFilter& filter, const Band& band, const MakeLines& makeLines,
                             const UseRows& useRows) {
    const int size = filter.kernelSize;
    const int centre = size / 2;
    const GaussScratch scratch(filter, kQuantities, band.thread);
    float* const taps = scratch.Taps();
    GaussTaps(size, filter.sigma, taps);

    std::fill_n(scratch.Line(0), GaussScratch::LineLength(size), filter.borderValue);
    for (int q = 0; q < kQuantities; ++q) {
        WeighLine(taps, size, scratch.Line(0), scratch.RingRows(size) + q * kStripWidth);
    }

    std::array<const float*, kQuantities> lines;
    for (int x = 0; x < filter.width; x += kStripWidth) {
        int next = std::max(band.first - centre, 0);  // the row that enters the ring next
        for (int y = band.first; y < band.end; ++y) {
            const int reach = std::min(y - centre + size, filter.height);
            for (; next < reach; ++next) {
                // All lines before the first is filtered: a load that spans two fresh stores waits for them.
                makeLines(next, x - centre, lines);
                float* rows = scratch.RingRows(next % size);
                for (std::size_t q = 0; q < kQuantities; ++q) {
                    WeighLine(taps, size, lines[q], rows + q * kStripWidth);
                }
            }
            FindTapRows(filter, scratch, y, scratch.TapRows());
            WeighRows(taps, size, scratch.TapRows(), kQuantities * kStripWidth, scratch.Filtered());
            useRows(y, x, std::min(kStripWidth, filter.width - x), scratch.Filtered());
        }
    }
}

}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
