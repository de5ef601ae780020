#include "kernels/space_time_ssim.h"

#include "kernels/bands.h"
#include "kernels/space_time_window.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/space_time_ssim.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <hwy/cache_control.h>

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// Step 1: the sums over time of one row of a strip.

// The sums of the pixels at `offset` of the tiles, Lanes(d) of them. Two frames equally far from the middle
// share a weight; their sums are exact in float.
template <class D>
HWY_INLINE void SumFrames(D d, const SpaceTimeFrames& frames, const SpaceTimeWindow& window,
                          std::ptrdiff_t offset, double* sums) {
    const hn::Rebind<float, D> f;
    const hn::Rebind<std::int32_t, D> integers;
    const hn::Rebind<std::uint8_t, D> bytes;
    const auto load = [&](const std::uint8_t* tiles, std::ptrdiff_t frame) HWY_ATTR {
        return hn::ConvertTo(f, hn::PromoteTo(integers, hn::LoadU(bytes, tiles + offset + frame)));
    };
    const auto weighted = [d](auto weight, auto value)
                              HWY_ATTR { return hn::Mul(weight, hn::PromoteTo(d, value)); };

    const auto x = load(frames.first, window.before[0]);
    const auto y = load(frames.second, window.before[0]);
    const auto middleWeight = hn::Set(d, window.timeWeights[0]);
    auto sumX = weighted(middleWeight, x);
    auto sumY = weighted(middleWeight, y);
    auto sumXX = weighted(middleWeight, hn::Mul(x, x));
    auto sumYY = weighted(middleWeight, hn::Mul(y, y));
    auto sumXY = weighted(middleWeight, hn::Mul(x, y));
    for (int t = 1; t <= SpaceTimeWindow::kTimeReach; ++t) {
        const auto x0 = load(frames.first, window.before[t]);
        const auto x1 = load(frames.first, window.behind[t]);
        const auto y0 = load(frames.second, window.before[t]);
        const auto y1 = load(frames.second, window.behind[t]);
        const auto weight = hn::Set(d, window.timeWeights[t]);
        const auto productSum = [=](auto a0, auto b0, auto a1, auto b1) HWY_ATTR {
            return weighted(weight, hn::Add(hn::Mul(a0, b0), hn::Mul(a1, b1)));
        };
        sumX = hn::Add(sumX, weighted(weight, hn::Add(x0, x1)));
        sumY = hn::Add(sumY, weighted(weight, hn::Add(y0, y1)));
        sumXX = hn::Add(sumXX, productSum(x0, x0, x1, x1));
        sumYY = hn::Add(sumYY, productSum(y0, y0, y1, y1));
        sumXY = hn::Add(sumXY, productSum(x0, y0, x1, y1));
    }
    hn::StoreU(sumX, d, sums);
    hn::StoreU(sumY, d, sums + StripRows::kStride);
    hn::StoreU(sumXX, d, sums + 2 * StripRows::kStride);
    hn::StoreU(sumYY, d, sums + 3 * StripRows::kStride);
    hn::StoreU(sumXY, d, sums + 4 * StripRows::kStride);
}

// Fetches a part of a tile, `column` of `kTileWidth` of the way through it.
HWY_INLINE void FetchTile(const SpaceTimeFrames& frames, std::ptrdiff_t tile, int column, int step) {
    const int slots = frames.layout.slots;
    const int end = (column + step) * slots / FrameTiles::kTileWidth;
    for (int slot = column * slots / FrameTiles::kTileWidth; slot < end; ++slot) {
        hwy::Prefetch(frames.first + tile + slot * FrameTiles::kTileWidth);
        hwy::Prefetch(frames.second + tile + slot * FrameTiles::kTileWidth);
    }
}

// Row y of a strip whose first column is `first` and of which `sums` is column 0, with what its lines see
// beside it.
HWY_INLINE void SumRowOverTime(const SpaceTimeFrames& frames, const SpaceTimeWindow& window, int y, int first,
                               int end, double* sums) {
    const hn::CappedTag<double, StripRows::kMargin> d;  // a vector never spans two tiles
    const int step = static_cast<int>(hn::Lanes(d));
    const int from = std::max(first - StripRows::kMargin, 0);
    const int to = std::min(end + StripRows::kMargin, frames.layout.width);
    const int lastTile = (to - 1) / FrameTiles::kTileWidth * FrameTiles::kTileWidth;
    const int nextRow = std::min(y + 1, frames.layout.height - 1);
    for (int x = from; x < to; x += step) {
        const int column = x % FrameTiles::kTileWidth;
        const int tile = x - column;
        const std::ptrdiff_t next =
            tile < lastTile ? frames.layout.OffsetOf(tile + FrameTiles::kTileWidth, y)
                            : frames.layout.OffsetOf(from - from % FrameTiles::kTileWidth, nextRow);
        FetchTile(frames, next, column, step);
        SumFrames(d, frames, window, frames.layout.OffsetOf(x, y), sums + (x - first));
    }
    for (int quantity = 0; quantity < StripRows::kSums; ++quantity) {
        double* row = sums + quantity * StripRows::kStride;
        std::fill(row - StripRows::kMargin, row + (from - first), row[from - first]);
        std::fill(row + (to - first), row + (end - first) + StripRows::kMargin, row[to - 1 - first]);
    }
}

// Step 2: the sums along a line, and its value.

template <int kStepX, int kStepY, class D>
HWY_INLINE hn::Vec<D> SumLine(D d, const StripRows& rows, const SpaceTimeWindow& window, int quantity,
                              int x) {
    const auto load = [&](int pixel) HWY_ATTR {
        return hn::LoadU(d, rows.At(pixel * kStepY) + quantity * StripRows::kStride + x + pixel * kStepX);
    };
    auto sum = hn::Mul(hn::Set(d, window.spaceWeights[0]), load(0));
    HWY_UNROLL(5)
    for (int pixel = 1; pixel <= kSpaceReach; ++pixel) {
        const auto both = hn::Add(load(-pixel), load(pixel));
        sum = hn::Add(sum, hn::Mul(hn::Set(d, window.spaceWeights[pixel]), both));
    }
    return sum;
}

template <class D>
HWY_INLINE hn::Vec<D> Limit(D d, hn::Vec<D> value) {
    return hn::Min(hn::Max(value, hn::Zero(d)), hn::Set(d, 1.0));
}

struct Constants {
    double c1;
    double c2;
};

template <int kStepX, int kStepY, class D>
HWY_INLINE hn::Vec<D> LineValue(D d, const StripRows& rows, const SpaceTimeWindow& window,
                                const Constants& constants, int x) {
    const auto mx = SumLine<kStepX, kStepY>(d, rows, window, 0, x);
    const auto my = SumLine<kStepX, kStepY>(d, rows, window, 1, x);
    const auto exx = SumLine<kStepX, kStepY>(d, rows, window, 2, x);
    const auto eyy = SumLine<kStepX, kStepY>(d, rows, window, 3, x);
    const auto exy = SumLine<kStepX, kStepY>(d, rows, window, 4, x);
    const auto c1 = hn::Set(d, constants.c1);
    const auto c2 = hn::Set(d, constants.c2);
    const auto two = hn::Set(d, 2.0);
    const auto mxx = hn::Mul(mx, mx);
    const auto myy = hn::Mul(my, my);
    const auto mxy = hn::Mul(mx, my);
    const auto above = hn::Mul(hn::Add(hn::Mul(two, mxy), c1), hn::Add(hn::Mul(hn::Sub(exy, mxy), two), c2));
    const auto variances = hn::Add(hn::Sub(hn::Sub(exx, mxx), myy), eyy);
    const auto below = hn::Mul(hn::Add(hn::Add(mxx, myy), c1), hn::Add(variances, c2));
    return Limit(d, hn::Div(above, below));
}

// Step 3: the pixels of a row, in runs with the same lines.

// Stores mean(d, x) for the pixels from `x` to `end`, whole cells.
template <class Mean>
HWY_INLINE void FillRun(int x, int end, float* values, const Mean& mean) {
    const auto fill = [&](auto d) HWY_ATTR {
        const hn::Rebind<float, decltype(d)> f;
        const int step = static_cast<int>(hn::Lanes(d));
        for (; x + step <= end; x += step) hn::StoreU(hn::DemoteTo(f, Limit(d, mean(d, x))), f, values + x);
    };
    fill(hn::ScalableTag<double>());
    fill(hn::CappedTag<double, kLineCell>());
}

HWY_NOINLINE void FillSameLines(LineSet lines, int x, int end, const StripRows& rows,
                                const SpaceTimeWindow& window, const Constants& constants, float* values) {
    const auto horizontal = [&](auto d, int column)
                                HWY_ATTR { return LineValue<1, 0>(d, rows, window, constants, column); };
    const auto vertical = [&](auto d, int column)
                              HWY_ATTR { return LineValue<0, 1>(d, rows, window, constants, column); };
    const auto cross = [&](auto d, int column)
                           HWY_ATTR { return hn::Add(horizontal(d, column), vertical(d, column)); };
    switch (lines) {
        case LineSet::Horizontal:
            return FillRun(x, end, values, horizontal);
        case LineSet::Vertical:
            return FillRun(x, end, values, vertical);
        case LineSet::Cross:
            return FillRun(x, end, values, [&](auto d, int column) HWY_ATTR {
                return hn::Mul(cross(d, column), hn::Set(d, 0.5));
            });
        case LineSet::Star:
            return FillRun(x, end, values, [&](auto d, int column) HWY_ATTR {
                const auto falling = LineValue<1, 1>(d, rows, window, constants, column);
                const auto rising = LineValue<1, -1>(d, rows, window, constants, column);
                return hn::Mul(hn::Add(hn::Add(cross(d, column), falling), rising), hn::Set(d, 0.25));
            });
    }
}

HWY_INLINE void FillRow(const LineSet* cells, int width, const StripRows& rows, const SpaceTimeWindow& window,
                        const Constants& constants, float* values) {
    const int count = width / kLineCell;
    for (int cell = 0; cell < count;) {
        int next = cell + 1;
        while (next < count && cells[next] == cells[cell]) ++next;
        FillSameLines(cells[cell], cell * kLineCell, next * kLineCell, rows, window, constants, values);
        cell = next;
    }
}

void FillBand(const SpaceTimeFrames& frames, const SpaceTimeWindow& window, const Band& band, double c1,
              double c2, const SpaceTimeMap& map, double* ring) {
    for (int first = 0; first < map.width; first += StripRows::kWidth) {
        const int end = std::min(first + StripRows::kWidth, map.width);
        int made = std::max(band.first - kSpaceReach, 0);
        for (int y = band.first; y < band.end; ++y) {
            const StripRows rows(ring, y, frames.layout.height);
            for (; made <= rows.Last(); ++made)
                SumRowOverTime(frames, window, made, first, end, StripRows::InRing(ring, made));
            const LineSet* cells =
                map.lines + std::ptrdiff_t{y} / kLineCell * (map.width / kLineCell) + first / kLineCell;
            FillRow(cells, end - first, rows, window, {c1, c2},
                    map.values + std::ptrdiff_t{y} * map.width + first);
        }
    }
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {
HWY_EXPORT(FillBand);
}  // namespace

void SpaceTimeSSIM(const SpaceTimeFrames& frames, double c1, double c2, const SpaceTimeMap& map,
                   void* scratch) {
    const auto fillBand = HWY_DYNAMIC_DISPATCH(FillBand);
    const SpaceTimeWindow window(frames.oldestSlot);
    ForEachBand(map.width, map.rows, [&](const Band& band) {
        fillBand(frames, window, band, c1, c2, map, StripRows::RingOf(scratch, band.thread));
    });
}

std::size_t GetSpaceTimeScratchSize(int mapWidth, int mapRows) {
    return StripRows::BytesOfRing() * static_cast<std::size_t>(MaxTeamSize(mapWidth, mapRows));
}

}  // namespace Kernels
#endif
