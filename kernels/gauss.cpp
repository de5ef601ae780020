#include "kernels/gauss.h"

#include "kernels/bands.h"
#include "kernels/gauss_strips.h"
#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/gauss.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/gauss_strips-inl.h"

#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

void FilterBand(const StripFilter& filter, const Band& band, const float* source, int sourceStride,
                float* target, int targetStride) {
    const GaussScratch scratch(filter, 1, band.thread);
    FilterStrips<1>(
        filter, band,
        [&](int y, int first, auto& lines)
            HWY_ATTR { lines[0] = WindowLine(filter, source, sourceStride, y, first, scratch.Line(0)); },
        [&](int y, int x, int count, const float* filtered) HWY_ATTR {
            std::memcpy(Row(target, targetStride, y) + x, filtered,
                        sizeof(float) * static_cast<std::size_t>(count));
        });
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {
HWY_EXPORT(FilterBand);
}  // namespace

void FilterGaussBorder(const float* source, int sourceStride, float* target, int targetStride, int width,
                       int height, int kernelSize, float sigma, BorderKind border, float borderValue,
                       void* scratch) {
    const auto filterBand = HWY_DYNAMIC_DISPATCH(FilterBand);
    const StripFilter filter{width, height, kernelSize, sigma, border, borderValue, scratch};
    ForEachBand(width, height, [&](const Band& band) {
        filterBand(filter, band, source, sourceStride, target, targetStride);
    });
}

std::size_t GetGaussScratchSize(int width, int height, int kernelSize) {
    return GaussScratch::Bytes(width, height, kernelSize, 1);
}

}  // namespace Kernels
#endif
