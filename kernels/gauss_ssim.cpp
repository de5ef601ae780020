#include "kernels/gauss_ssim.h"

#include "kernels/bands.h"
#include "kernels/gauss_strips.h"
#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/gauss_ssim.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/gauss_strips-inl.h"
#include "kernels/pixels-inl.h"
#include "kernels/ssim_rows-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

constexpr int kQuantities = 5;

HWY_INLINE void MulLine(const float* first, const float* second, int width, float* target) {
    ForEachVector<float>(width, [=](auto d, int x) HWY_ATTR {
        hn::StoreU(hn::Mul(hn::LoadU(d, first + x), hn::LoadU(d, second + x)), d, target + x);
    });
}

// Filters the two pictures, their squares and their product; useMoments(moments, map, count) makes a part of
// a row of the map.
template <class UseMoments>
HWY_INLINE void FilterMoments(const StripFilter& filter, const Band& band, const SSIMPlanes& planes,
                              const UseMoments& useMoments) {
    const GaussScratch scratch(filter, kQuantities, band.thread);
    const auto makeLines = [&](int y, int first, auto& lines) HWY_ATTR {
        lines[0] = WindowLine(filter, planes.first, planes.firstStride, y, first, scratch.Line(0));
        lines[1] = WindowLine(filter, planes.second, planes.secondStride, y, first, scratch.Line(1));
        const auto product = [&](int q, const float* a, const float* b) HWY_ATTR {
            MulLine(a, b, GaussScratch::LineLength(filter.kernelSize), scratch.Line(q));
            return scratch.Line(q);
        };
        lines[2] = product(2, lines[0], lines[0]);
        lines[3] = product(3, lines[1], lines[1]);
        lines[4] = product(4, lines[0], lines[1]);
    };
    FilterStrips<kQuantities>(
        filter, band, makeLines, [&](int y, int x, int count, const float* filtered) HWY_ATTR {
            const auto rowOf = [=](int quantity) { return filtered + quantity * kStripWidth; };
            const SSIMMoments moments{rowOf(0), rowOf(1), rowOf(2), rowOf(3), rowOf(4), 0};
            FetchBelow(filter, planes.map, planes.mapStride, y, x);
            useMoments(moments, Row(planes.map, planes.mapStride, y) + x, count);
        });
}

void SSIMBand(const StripFilter& filter, const Band& band, const SSIMPlanes& planes, float c1, float c2) {
    FilterMoments(filter, band, planes, [=](const SSIMMoments& moments, float* map, int count) HWY_ATTR {
        SSIMRow(moments, map, count, c1, c2);
    });
}

void ContrastStructureBand(const StripFilter& filter, const Band& band, const SSIMPlanes& planes, double c2) {
    FilterMoments(filter, band, planes, [=](const SSIMMoments& moments, float* map, int count) HWY_ATTR {
        ContrastStructureRow(moments, map, count, c2);
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

StripFilter FilterOf(const SSIMPlanes& planes, const GaussWindow& window, void* scratch) {
    return {planes.width, planes.height, window.size, window.sigma, window.border, 0, scratch};
}

}  // namespace

void GaussSSIM(const SSIMPlanes& planes, const GaussWindow& window, float c1, float c2, void* scratch) {
    const auto ssimBand = HWY_DYNAMIC_DISPATCH(SSIMBand);
    const StripFilter filter = FilterOf(planes, window, scratch);
    ForEachBand(planes.width, planes.height,
                [&](const Band& band) { ssimBand(filter, band, planes, c1, c2); });
}

void GaussContrastStructure(const SSIMPlanes& planes, const GaussWindow& window, double c2, void* scratch) {
    const auto contrastStructureBand = HWY_DYNAMIC_DISPATCH(ContrastStructureBand);
    const StripFilter filter = FilterOf(planes, window, scratch);
    ForEachBand(planes.width, planes.height,
                [&](const Band& band) { contrastStructureBand(filter, band, planes, c2); });
}

std::size_t GetGaussSSIMScratchSize(int width, int height, int windowSize) {
    return GaussScratch::Bytes(width, height, windowSize, HWY_STATIC_DISPATCH(kQuantities));
}

}  // namespace Kernels
#endif
