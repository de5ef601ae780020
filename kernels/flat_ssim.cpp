#include "kernels/flat_ssim.h"

#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/flat_ssim.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <hwy/cache_control.h>

#include "kernels/flat_formula-inl.h"
#include "kernels/transpose-inl.h"

#include <algorithm>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// Chains of additions run down the columns, then along the rows. Square tiles, walked from the left, let both
// run in lanes: going down a lane is a column; then the tile is turned, and going right a lane is a row.

using Floats = FlatFloats;
using Vector = FlatVector;
constexpr int kSide = static_cast<int>(hn::MaxLanes(Floats()));
constexpr int kTilePixels = kSide * kSide;
constexpr int kTileRings = kFlatWindow * kWindowSums * kSide;

// The columns that are kept as differences: those of the tile and the 8 before.
constexpr int kKeptColumns = std::max(2 * kSide, 2 * kFlatWindow);

// How far ahead of a tile the planes are fetched, in floats. Four to sixteen cache lines are alike, and save
// a quarter of the time.
constexpr int kFetchAhead = 64;

// A tile of a plane. Where it reaches over the plane's edge it is a copy, completed with zeros.
class Tile {
public:
    Tile(const float* plane, int planeStride, int x, int y, int columns, int rows)
        : pixels(Row(plane, planeStride, y) + x), stride(planeStride) {
        if (columns == kSide && rows == kSide) return;
        std::fill_n(copy, kTilePixels, 0.0f);
        for (int i = 0; i < rows; ++i) std::copy_n(RowOf(i), columns, copy + i * kSide);
        pixels = copy;
        stride = kSide * static_cast<int>(sizeof(float));
    }

    Tile(const Tile&) = delete;
    Tile& operator=(const Tile&) = delete;

    const float* RowOf(int i) const { return Row(pixels, stride, i); }

private:
    const float* pixels;
    int stride;
    HWY_ALIGN float copy[kTilePixels];
};

// Continues the running sums of a tile's columns, from plane row `y` on, and gives their differences over 8
// rows as [sum][row][column]. `rings` has the running sums after the 8 rows above, as [row % 8][sum][column].
HWY_INLINE void SumColumns(const Tile& first, const Tile& second, int y, float* HWY_RESTRICT rings,
                           float* HWY_RESTRICT differences) {
    const Floats d;
    const auto ringOf = [rings](int row) { return rings + row % kFlatWindow * (kWindowSums * kSide); };
    Vector sums[kWindowSums];
    for (int k = 0; k < kWindowSums; ++k) sums[k] = hn::Load(d, ringOf(y + kFlatWindow - 1) + k * kSide);

    for (int i = 0; i < kSide; ++i) {
        hwy::Prefetch(first.RowOf(i) + kFetchAhead);
        hwy::Prefetch(second.RowOf(i) + kFetchAhead);
        const auto a = hn::LoadU(d, first.RowOf(i));
        const auto b = hn::LoadU(d, second.RowOf(i));
        const Vector products[kWindowSums] = {a, b, hn::Mul(a, a), hn::Mul(b, b), hn::Mul(a, b)};
        float* const ring = ringOf(y + i);
        for (int k = 0; k < kWindowSums; ++k) {
            sums[k] = hn::Add(sums[k], products[k]);
            const auto eightRowsAbove = hn::Load(d, ring + k * kSide);
            hn::Store(hn::Sub(sums[k], eightRowsAbove), d, differences + k * kTilePixels + i * kSide);
            hn::Store(sums[k], d, ring + k * kSide);
        }
    }
}

// The windows that move along a block of rows, a row a lane. Before column 7 they lack columns, which count
// as zero: so the first sum of 8 arises like the others.
class MovingWindows {
public:
    // Takes the differences of the tile at column `x` and gives its values as [row] of columns.
    template <class ValuesOf>
    HWY_INLINE void Move(const ValuesOf& valuesOf, int x, const float* HWY_RESTRICT differences,
                         Vector (&values)[kSide]) {
        const Floats d;
        for (int k = 0; k < kWindowSums; ++k) {
            Vector columns[kSide];
            for (int i = 0; i < kSide; ++i)
                columns[i] = hn::Load(d, differences + k * kTilePixels + i * kSide);
            Transpose(Floats(), columns);
            for (int i = 0; i < kSide; ++i) hn::Store(columns[i], d, kept[k][(x + i) % kKeptColumns]);
        }

        Vector window[kWindowSums];
        for (int k = 0; k < kWindowSums; ++k) window[k] = hn::Load(d, sums[k]);
        for (int i = 0; i < kSide; ++i) {
            const int enters = (x + i) % kKeptColumns;
            const int leaves = (enters + kKeptColumns - kFlatWindow) % kKeptColumns;
            for (int k = 0; k < kWindowSums; ++k) {
                window[k] = hn::Add(window[k], hn::Load(d, kept[k][enters]));
                window[k] = hn::Sub(window[k], hn::Load(d, kept[k][leaves]));
            }
            values[i] = valuesOf(window);
        }
        for (int k = 0; k < kWindowSums; ++k) hn::Store(window[k], d, sums[k]);
        Transpose(Floats(), values);
    }

private:
    HWY_ALIGN float kept[kWindowSums][kKeptColumns][kSide] = {};  // column x at x % kKeptColumns
    HWY_ALIGN float sums[kWindowSums][kSide] = {};
};

HWY_INLINE void StoreRow(Vector values, int columns, float* target) {
    const Floats d;
    if (columns == kSide) {
        hn::StoreU(values, d, target);
        return;
    }
    HWY_ALIGN float row[kSide];
    hn::Store(values, d, row);
    std::copy_n(row, columns, target);
}

template <class ValuesOf>
HWY_INLINE void MapPlanes(const SSIMPlanes& planes, const ValuesOf& valuesOf, void* scratch) {
    HWY_ALIGN float differences[kWindowSums * kTilePixels];
    std::memset(scratch, 0, GetFlatSSIMScratchSize(planes.width));
    for (int y = 0; y < planes.height; y += kSide) {
        const int rows = std::min(kSide, planes.height - y);
        MovingWindows windows;
        float* rings = static_cast<float*>(scratch);
        for (int x = 0; x < planes.width; x += kSide, rings += kTileRings) {
            const int columns = std::min(kSide, planes.width - x);
            const Tile first(planes.first, planes.firstStride, x, y, columns, rows);
            const Tile second(planes.second, planes.secondStride, x, y, columns, rows);
            SumColumns(first, second, y, rings, differences);
            Vector values[kSide];
            windows.Move(valuesOf, x, differences, values);
            for (int i = std::max(0, kFlatWindow - 1 - y); i < rows; ++i)
                StoreRow(values[i], columns,
                         Row(planes.map, planes.mapStride, y + i - (kFlatWindow - 1)) + x);
        }
    }
}

void MapSSIM(const SSIMPlanes& planes, float c1, float c2, void* scratch) {
    MapPlanes(planes, FlatSSIMOf{c1, c2}, scratch);
}

void MapContrastStructure(const SSIMPlanes& planes, float c2, void* scratch) {
    MapPlanes(planes, FlatContrastStructureOf{c2}, scratch);
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {

HWY_EXPORT(MapSSIM);
HWY_EXPORT(MapContrastStructure);

void RepeatFirstWindow(const SSIMPlanes& planes) {
    for (int y = 0; y + kFlatWindow <= planes.height; ++y) {
        float* const row = Row(planes.map, planes.mapStride, y);
        std::fill_n(row, kFlatWindow - 1, row[kFlatWindow - 1]);
    }
}

}  // namespace

void FlatSSIM(const SSIMPlanes& planes, float c1, float c2, void* scratch) {
    HWY_DYNAMIC_DISPATCH(MapSSIM)(planes, c1, c2, scratch);
    RepeatFirstWindow(planes);
}

void FlatContrastStructure(const SSIMPlanes& planes, float c2, void* scratch) {
    HWY_DYNAMIC_DISPATCH(MapContrastStructure)(planes, c2, scratch);
    RepeatFirstWindow(planes);
}

std::size_t GetFlatSSIMScratchSize(int width) {
    constexpr int kWidestTile = 16;
    const int columns = (width + kWidestTile - 1) / kWidestTile * kWidestTile;
    return sizeof(float) * static_cast<std::size_t>(kFlatWindow * kWindowSums) *
           static_cast<std::size_t>(columns);
}

}  // namespace Kernels
#endif
