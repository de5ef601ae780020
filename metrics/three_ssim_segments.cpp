#include "metrics/three_ssim_segments.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "metrics/three_ssim_segments.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/pixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Metric::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

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
HWY_EXPORT(SplitPixels);
}  // namespace

std::array<int, kSegmentCount> Split(const float* gradientFirst, const float* gradientSecond,
                                     const float* values, int width, const SegmentThresholds& thresholds,
                                     const SplitRow& row) {
    return HWY_DYNAMIC_DISPATCH(SplitPixels)(gradientFirst, gradientSecond, values, width, thresholds, row);
}

}  // namespace Metric
#endif
