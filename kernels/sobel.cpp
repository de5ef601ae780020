#include "kernels/sobel.h"

#include "kernels/bands.h"
#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/sobel.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/pixels-inl.h"

#include <algorithm>
#include <array>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

// One target row from the source rows above, at and below it. gradient(d, above, centre, below) gets pointers
// to the left neighbours of the pixels to make.
template <class Gradient>
HWY_INLINE void FilterRow(const float* above, const float* centre, const float* below, int width,
                          BorderKind border, float borderValue, float* target, const Gradient& gradient) {
    if (width > 2) {
        ForEachVector<float>(width - 2, [=](auto d, int x) HWY_ATTR {
            hn::StoreU(gradient(d, above + x, centre + x, below + x), d, target + x + 1);
        });
    }
    const auto pixel = [=](const float* row, int x) {
        const int nearest = std::clamp(x, 0, width - 1);
        return nearest == x || border == BorderReplicate ? row[nearest] : borderValue;
    };
    for (const int x : {0, width - 1}) {
        const auto around = [=](const float* row) {
            return std::array<float, 3>{pixel(row, x - 1), pixel(row, x), pixel(row, x + 1)};
        };
        const hn::CappedTag<float, 1> one;
        hn::StoreU(gradient(one, around(above).data(), around(centre).data(), around(below).data()), one,
                   target + x);
    }
}

// Each of a pixel from pointers to its left neighbours above, at and below it.

template <class D>
HWY_INLINE hn::VFromD<D> Horiz(D d, const float* above, const float*, const float* below) {
    const auto smooth = [=](const float* row) HWY_ATTR {
        const auto middle = hn::LoadU(d, row + 1);
        return hn::Add(hn::Add(hn::Add(hn::LoadU(d, row), middle), middle), hn::LoadU(d, row + 2));
    };
    return hn::Sub(smooth(above), smooth(below));
}

template <class D>
HWY_INLINE hn::VFromD<D> Vert(D d, const float* above, const float* centre, const float* below) {
    const auto slope = [=](const float* row)
                           HWY_ATTR { return hn::Sub(hn::LoadU(d, row + 2), hn::LoadU(d, row)); };
    return hn::Add(hn::Add(hn::Add(slope(above), slope(centre)), slope(centre)), slope(below));
}

void HorizRow(const float* above, const float* centre, const float* below, int width, BorderKind border,
              float borderValue, float* target) {
    FilterRow(above, centre, below, width, border, borderValue, target,
              [](auto d, const float* first, const float* middle, const float* last)
                  HWY_ATTR { return Horiz(d, first, middle, last); });
}

void VertRow(const float* above, const float* centre, const float* below, int width, BorderKind border,
             float borderValue, float* target) {
    FilterRow(above, centre, below, width, border, borderValue, target,
              [](auto d, const float* first, const float* middle, const float* last)
                  HWY_ATTR { return Vert(d, first, middle, last); });
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {

HWY_EXPORT(HorizRow);
HWY_EXPORT(VertRow);

// The scratch memory is the row outside a picture with a constant border.
template <class FilterRow>
void FilterPlane(const FilterRow& filterRow, const float* source, int sourceStride, float* target,
                 int targetStride, int width, int height, BorderKind border, float borderValue,
                 void* scratch) {
    auto* outside = static_cast<float*>(scratch);
    std::fill_n(outside, std::max(width, 0), borderValue);
    const auto rowAt = [=](int y) -> const float* {
        const int nearest = std::clamp(y, 0, height - 1);
        return nearest == y || border == BorderReplicate ? Row(source, sourceStride, nearest) : outside;
    };
    ForEachRow(
        width, height,
        [=](int y) {
            filterRow(rowAt(y - 1), rowAt(y), rowAt(y + 1), width, border, borderValue,
                      Row(target, targetStride, y));
        },
        kLightPixelsPerThread);
}

}  // namespace

void FilterSobelHorizBorder(const float* source, int sourceStride, float* target, int targetStride, int width,
                            int height, BorderKind border, float borderValue, void* scratch) {
    FilterPlane(HWY_DYNAMIC_DISPATCH(HorizRow), source, sourceStride, target, targetStride, width, height,
                border, borderValue, scratch);
}

void FilterSobelVertBorder(const float* source, int sourceStride, float* target, int targetStride, int width,
                           int height, BorderKind border, float borderValue, void* scratch) {
    FilterPlane(HWY_DYNAMIC_DISPATCH(VertRow), source, sourceStride, target, targetStride, width, height,
                border, borderValue, scratch);
}

std::size_t GetSobelScratchSize(int width, int) {
    return sizeof(float) * static_cast<std::size_t>(std::max(width, 0));
}

}  // namespace Kernels
#endif
