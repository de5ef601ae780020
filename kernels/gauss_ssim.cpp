#include "kernels/gauss_ssim.h"

#include "kernels/bands.h"
#include "kernels/gauss_blocks.h"
#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/gauss_ssim.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <hwy/cache_control.h>

#include "kernels/gauss_walk-inl.h"
#include "kernels/ssim_rows-inl.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

// The pictures are filtered in blocks of 16 by 16, which are walked from the left. Across, the lanes are
// rows; then the block is turned, and down, the lanes are columns. A filter's results come five places late,
// so a block of results lies five columns and rows before the pixels that complete it.

// How far ahead of a block the planes are fetched, in floats: the processor can't foresee so many rows at
// once. One cache line to eight are alike.
constexpr int kFetchAhead = 64;

// The block of a picture from (x, y) on, which may lie outside.
struct Place {
    int x;
    int y;

    bool IsInside(const SSIMPlanes& planes) const {
        return x >= 0 && y >= 0 && x + kGaussBlock <= planes.width && y + kGaussBlock <= planes.height;
    }
};

void FetchRows(const float* block, int stride) {
    for (int i = 0; i < kGaussBlock; ++i) hwy::Prefetch(Row(block, stride, i) + kFetchAhead);
}

// Copies a block that reaches over the picture's edge and completes it with what lies there.
void CopyRim(const float* plane, int stride, const SSIMPlanes& planes, BorderKind border, const Place& place,
             GaussLines& block) {
    for (int i = 0; i < kGaussBlock; ++i) {
        const int y = std::clamp(place.y + i, 0, planes.height - 1);
        const float* row = Row(plane, stride, y);
        for (int k = 0; k < kGaussBlock; ++k) {
            const int x = std::clamp(place.x + k, 0, planes.width - 1);
            const bool seen = border == BorderReplicate || (x == place.x + k && y == place.y + i);
            block[i][k] = seen ? row[x] : 0;
        }
    }
}

// A block of a picture with its columns as lines.
HWY_INLINE void TakeBlock(const float* plane, int stride, const SSIMPlanes& planes, BorderKind border,
                          const Place& place, GaussLines& rim, GaussLines& columns) {
    if (place.IsInside(planes)) {
        const float* block = Row(plane, stride, place.y) + place.x;
        FetchRows(block, stride);
        TurnBlock(block, stride, columns);
    } else {
        CopyRim(plane, stride, planes, border, place, rim);
        TurnBlock(rim[0], sizeof rim[0], columns);
    }
}

HWY_INLINE void TakeQuantities(const SSIMPlanes& planes, BorderKind border, const Place& place,
                               GaussWork& work) {
    TakeBlock(planes.first, planes.firstStride, planes, border, place, work.rim[0], work.quantities[0]);
    TakeBlock(planes.second, planes.secondStride, planes, border, place, work.rim[1], work.quantities[1]);
    const WalkFloats d;
    const auto at = [&](int quantity, int i) HWY_ATTR { return work.quantities[quantity][0] + i; };
    for (int i = 0; i < kGaussBlock * kGaussBlock; i += kWalkLanes) {
        const auto first = hn::Load(d, at(0, i));
        const auto second = hn::Load(d, at(1, i));
        hn::Store(hn::Mul(first, first), d, at(2, i));
        hn::Store(hn::Mul(second, second), d, at(3, i));
        hn::Store(hn::Mul(first, second), d, at(4, i));
    }
}

// Adds the first `count` of a line's values to the sums of their row.
HWY_INLINE void AddToSums(const float* values, int count, double* sums) {
    const hn::CappedTag<double, kSumLanes> d;
    const hn::Rebind<float, decltype(d)> f;
    if (count == kGaussBlock) {
        for (int lane = 0; lane < kSumLanes; lane += static_cast<int>(hn::Lanes(d))) {
            const auto wide = hn::PromoteTo(d, hn::Load(f, values + lane));
            hn::Store(hn::Add(hn::Load(d, sums + lane), wide), d, sums + lane);
        }
    } else {
        for (int lane = 0; lane < count; ++lane) sums[lane] += static_cast<double>(values[lane]);
    }
}

// Values of a block, from its moments: mapLine(moments, values) makes a line of them.
template <class MapLine>
HWY_INLINE void MapBlock(const SSIMPlanes& planes, const Place& place, int rows, const GaussWork& work,
                         const GaussSSIMScratch& scratch, const MapLine& mapLine) {
    static_assert(kGaussBlock == kSumLanes);
    const int columns = std::min(kGaussBlock, planes.width - place.x);
    float* const map = planes.map == nullptr ? nullptr : Row(planes.map, planes.mapStride, place.y) + place.x;
    for (int i = 0; i < rows; ++i) {
        const auto lineOf = [&](int quantity) { return work.moments[quantity][i]; };
        HWY_ALIGN float values[kGaussBlock];
        mapLine(SSIMMoments{lineOf(0), lineOf(1), lineOf(2), lineOf(3), lineOf(4), 0}, values);
        AddToSums(values, columns, scratch.RowSums(place.y + i));
        if (map != nullptr) {
            float* const row = Row(map, planes.mapStride, i);
            hwy::Prefetch(row + kFetchAhead);
            if (columns == kGaussBlock) {
                std::copy_n(values, kGaussBlock, row);
            } else {
                std::copy_n(values, columns, row);
            }
        }
    }
}

template <class MapLine>
HWY_INLINE void FilterBand(const SSIMPlanes& planes, BorderKind border, const Band& band,
                           const GaussSSIMScratch& scratch, const MapLine& mapLine) {
    GaussWork& work = scratch.WorkOf(band.thread);
    GaussTaps(kGaussWindow, kGaussSigma, work.taps);
    const int blocks = (planes.width + kGaussBlock - 1) / kGaussBlock;
    std::fill_n(
        scratch.DownOf(band.thread)[0][0],
        static_cast<std::size_t>(blocks) * kGaussQuantities * (sizeof(UnfinishedSums) / sizeof(float)), 0.0f);
    std::fill(scratch.RowSums(band.first), scratch.RowSums(band.end), 0.0);

    // A block ahead of the first results, in either direction, only fills the sums.
    for (int y = band.first - kGaussBlock; y < band.end; y += kGaussBlock) {
        for (int block = -1; block < blocks; ++block) {
            const Place place = {block * kGaussBlock, y};
            TakeQuantities(planes, border, {place.x + kGaussReach, y + kGaussReach}, work);
            for (int quantity = 0; quantity < kGaussQuantities; ++quantity) {
                WalkBlock(work.taps, work.across[quantity], work.quantities[quantity], work.columns);
                if (block < 0) continue;
                TurnBlock(work.columns[0], sizeof work.columns[0], work.rows);
                WalkBlock(work.taps, scratch.DownOf(band.thread)[block * kGaussQuantities + quantity],
                          work.rows, work.moments[quantity]);
            }
            if (block < 0 || y < band.first) continue;
            MapBlock(planes, place, std::min(kGaussBlock, band.end - y), work, scratch, mapLine);
        }
    }
}

void SSIMBand(const SSIMPlanes& planes, BorderKind border, const Band& band, const GaussSSIMScratch& scratch,
              float c1, float c2) {
    FilterBand(planes, border, band, scratch, [=](const SSIMMoments& moments, float* values) HWY_ATTR {
        SSIMRow(moments, values, kGaussBlock, c1, c2);
    });
}

void ContrastStructureBand(const SSIMPlanes& planes, BorderKind border, const Band& band,
                           const GaussSSIMScratch& scratch, double c2) {
    FilterBand(planes, border, band, scratch, [=](const SSIMMoments& moments, float* values) HWY_ATTR {
        ContrastStructureRow(moments, values, kGaussBlock, c2);
    });
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {

HWY_EXPORT(SSIMBand);
HWY_EXPORT(ContrastStructureBand);

// Calls filterBand(band, scratch) on a team and gives the mean of what it left in the row sums.
template <class FilterBand>
double MeanOfBands(const SSIMPlanes& planes, void* memory, const FilterBand& filterBand) {
    if (planes.width <= 0 || planes.height <= 0) return 0;
    const GaussSSIMScratch scratch(memory, planes.width, planes.height);
    ForEachBand(
        planes.width, planes.height, [&](const Band& band) { filterBand(band, scratch); },
        GaussPixelsPerThread(planes.width, planes.height));
    double total = 0;
    for (int y = 0; y < planes.height; ++y) {
        double sumOfRow = 0;
        for (int lane = 0; lane < kSumLanes; ++lane) sumOfRow += scratch.RowSums(y)[lane];
        total += sumOfRow;
    }
    return total / static_cast<double>(std::int64_t{planes.width} * planes.height);
}

}  // namespace

double GaussSSIM(const SSIMPlanes& planes, BorderKind border, float c1, float c2, void* memory) {
    const auto ssimBand = HWY_DYNAMIC_DISPATCH(SSIMBand);
    return MeanOfBands(planes, memory, [=](const Band& band, const GaussSSIMScratch& scratch) {
        ssimBand(planes, border, band, scratch, c1, c2);
    });
}

double GaussContrastStructure(const SSIMPlanes& planes, BorderKind border, double c2, void* memory) {
    const auto contrastStructureBand = HWY_DYNAMIC_DISPATCH(ContrastStructureBand);
    return MeanOfBands(planes, memory, [=](const Band& band, const GaussSSIMScratch& scratch) {
        contrastStructureBand(planes, border, band, scratch, c2);
    });
}

std::size_t GetGaussSSIMScratchSize(int width, int height) {
    return GaussSSIMScratch::Bytes(width, height);
}

}  // namespace Kernels
#endif
