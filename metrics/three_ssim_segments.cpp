#include "metrics/three_ssim_segments.h"

#include "kernels/bands.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "metrics/three_ssim_segments.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/pixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Metric::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// Of the pixels to the right of those given.
template <class D>
HWY_INLINE hn::VFromD<D> Gradient(D d, const float* above, const float* centre, const float* below) {
    const auto slope = [=](const float* row)
                           HWY_ATTR { return hn::Sub(hn::LoadU(d, row + 2), hn::LoadU(d, row)); };
    const auto smooth = [=](const float* row) HWY_ATTR {
        const auto middle = hn::LoadU(d, row + 1);
        return hn::Add(hn::Add(hn::Add(hn::LoadU(d, row), middle), middle), hn::LoadU(d, row + 2));
    };
    const auto vert = hn::Add(hn::Add(hn::Add(slope(above), slope(centre)), slope(centre)), slope(below));
    const auto horiz = hn::Sub(smooth(above), smooth(below));
    return hn::Sqrt(hn::Add(hn::Mul(vert, vert), hn::Mul(horiz, horiz)));
}

void GradientRow(const float* above, const float* centre, const float* below, int width, float* gradient) {
    Kernels::HWY_NAMESPACE::ForEachVector<float>(width - 2, [=](auto d, int x) HWY_ATTR {
        hn::StoreU(Gradient(d, above + x, centre + x, below + x), d, gradient + x + 1);
    });
    const hn::CappedTag<float, 1> one;
    const auto atLeftEnd = [](const float* row) { return std::array<float, 3>{0, row[0], row[1]}; };
    const auto atRightEnd = [=](const float* row) {
        return std::array<float, 3>{row[width - 2], row[width - 1], 0};
    };
    const auto end = [=](const auto& around) HWY_ATTR {
        return hn::GetLane(Gradient(one, around(above).data(), around(centre).data(), around(below).data()));
    };
    gradient[0] = end(atLeftEnd);
    gradient[width - 1] = end(atRightEnd);
}

std::array<int, kSegmentCount> SplitPixels(const float* gradientFirst, const float* gradientSecond,
                                           const float* values, int width,
                                           const SegmentThresholds& thresholds, const SplitRow& row) {
    std::array<int, kSegmentCount> counts = {};
    Kernels::HWY_NAMESPACE::ForEachVector<float>(width, [&](auto d, int x) HWY_ATTR {
        const hn::Rebind<std::int32_t, decltype(d)> integers;
        const hn::Rebind<std::uint8_t, decltype(d)> bytes;
        const auto first = hn::LoadU(d, gradientFirst + x);
        const auto second = hn::LoadU(d, gradientSecond + x);
        const auto edgeThreshold = hn::Set(d, thresholds.edge);
        const auto edge = hn::Or(hn::Gt(first, edgeThreshold), hn::Gt(second, edgeThreshold));
        const auto texture = hn::AndNot(edge, hn::Ge(first, hn::Set(d, thresholds.texture)));
        const auto smooth = hn::Not(hn::Or(edge, texture));

        const auto take = [&](Segment segment, const auto& mask) HWY_ATTR {
            hn::StoreU(hn::IfThenElseZero(mask, hn::LoadU(d, values + x)), d, row.values[segment] + x);
            counts[segment] += static_cast<int>(hn::CountTrue(d, mask));
        };
        take(Smooth, smooth);
        take(Texture, texture);
        take(Edge, edge);

        const auto number = hn::IfThenElse(edge, hn::Set(d, float{Edge}),
                                           hn::IfThenElseZero(texture, hn::Set(d, float{Texture})));
        hn::StoreU(hn::DemoteTo(bytes, hn::ConvertTo(integers, number)), bytes, row.segments + x);
    });
    return counts;
}

}  // namespace
}  // namespace Metric::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Metric {

namespace {
HWY_EXPORT(GradientRow);
HWY_EXPORT(SplitPixels);
}  // namespace

void FillGradient(const float* picture, const float* black, int width, int height, float* gradient) {
    const auto gradientRow = HWY_DYNAMIC_DISPATCH(GradientRow);
    Kernels::ForEachRow(width, height, [=](int y) {
        const std::ptrdiff_t offset = std::ptrdiff_t{y} * width;
        const float* const row = picture + offset;
        gradientRow(y > 0 ? row - width : black, row, y + 1 < height ? row + width : black, width,
                    gradient + offset);
    });
}

std::array<int, kSegmentCount> Split(const float* gradientFirst, const float* gradientSecond,
                                     const float* values, int width, const SegmentThresholds& thresholds,
                                     const SplitRow& row) {
    return HWY_DYNAMIC_DISPATCH(SplitPixels)(gradientFirst, gradientSecond, values, width, thresholds, row);
}

}  // namespace Metric
#endif
