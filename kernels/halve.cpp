#include "kernels/halve.h"

#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/halve.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/pixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

void HalveRows(const float* HWY_RESTRICT top, const float* HWY_RESTRICT bottom, float* HWY_RESTRICT target,
               int width) {
    const auto halve = [=](auto d, int x) HWY_ATTR {
        hn::Vec<decltype(d)> topLeft, topRight, bottomLeft, bottomRight;
        hn::LoadInterleaved2(d, top + 2 * x, topLeft, topRight);
        hn::LoadInterleaved2(d, bottom + 2 * x, bottomLeft, bottomRight);
        const auto sum = hn::Add(hn::Add(hn::Add(topLeft, topRight), bottomLeft), bottomRight);
        hn::StoreU(hn::Mul(sum, hn::Set(d, 0.25f)), d, target + x);
    };
    ForEachVector<float>(width, halve);
}

// The sums are whole numbers below 2^10, so their order is of no importance.
void HalveByteRows(const std::uint8_t* HWY_RESTRICT top, const std::uint8_t* HWY_RESTRICT bottom,
                   float* HWY_RESTRICT target, int width) {
    const auto halve = [=](auto d, int x) HWY_ATTR {
        const hn::Rebind<std::uint8_t, decltype(d)> bytes;
        const hn::Rebind<std::int32_t, decltype(d)> integers;
        hn::Vec<decltype(bytes)> topLeft, topRight, bottomLeft, bottomRight;
        hn::LoadInterleaved2(bytes, top + 2 * x, topLeft, topRight);
        hn::LoadInterleaved2(bytes, bottom + 2 * x, bottomLeft, bottomRight);
        const auto wide = [=](auto samples) HWY_ATTR { return hn::PromoteTo(integers, samples); };
        const auto sum =
            hn::Add(hn::Add(wide(topLeft), wide(topRight)), hn::Add(wide(bottomLeft), wide(bottomRight)));
        hn::StoreU(hn::Mul(hn::ConvertTo(d, sum), hn::Set(d, 0.25f)), d, target + x);
    };
    ForEachVector<float>(width, halve);
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {
HWY_EXPORT(HalveRows);
HWY_EXPORT(HalveByteRows);
}  // namespace

void Halve(const float* source, int sourceStride, float* target, int targetStride, int width, int height) {
    const auto halveRows = HWY_DYNAMIC_DISPATCH(HalveRows);
    for (int y = 0; y < height; ++y) {
        halveRows(Row(source, sourceStride, 2 * y), Row(source, sourceStride, 2 * y + 1),
                  Row(target, targetStride, y), width);
    }
}

void HalveBytes(const std::uint8_t* source, std::ptrdiff_t sourceStride, float* target, int targetStride,
                int width, int height) {
    const auto halveRows = HWY_DYNAMIC_DISPATCH(HalveByteRows);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* const top = source + sourceStride * 2 * y;
        halveRows(top, top + sourceStride, Row(target, targetStride, y), width);
    }
}

}  // namespace Kernels
#endif
