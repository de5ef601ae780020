#include "kernels/byte_difference.h"

#include "kernels/bands.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/byte_difference.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <atomic>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

/// So many pixels of a row at once: the sum of all lanes, 16384 * 255^2 at most, is below 2^31.
constexpr int kPixelsAtOnce = 16384;

std::uint64_t SumRow(const std::uint8_t* HWY_RESTRICT a, const std::uint8_t* HWY_RESTRICT b, int width) {
    const hn::ScalableTag<std::int16_t> d;
    const hn::Rebind<std::uint8_t, decltype(d)> bytes;
    const hn::RepartitionToWide<decltype(d)> wide;
    const int step = static_cast<int>(hn::Lanes(d));
    std::uint64_t total = 0;
    int x = 0;
    while (x + step <= width) {
        const int end = std::min(width, x + kPixelsAtOnce);
        auto even = hn::Zero(wide);
        auto odd = hn::Zero(wide);
        for (; x + step <= end; x += step) {
            const auto difference =
                hn::Sub(hn::PromoteTo(d, hn::LoadU(bytes, a + x)), hn::PromoteTo(d, hn::LoadU(bytes, b + x)));
            even = hn::ReorderWidenMulAccumulate(wide, difference, difference, even, odd);
        }
        total += static_cast<std::uint64_t>(hn::GetLane(hn::SumOfLanes(wide, hn::Add(even, odd))));
    }
    for (; x < width; ++x) {
        const int difference = a[x] - b[x];
        total += static_cast<std::uint64_t>(difference * difference);
    }
    return total;
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

HWY_EXPORT(SumRow);

std::uint64_t SumSquaredDifferences(const ByteRows& a, const ByteRows& b, int width, int height) {
    const auto sumRow = HWY_DYNAMIC_DISPATCH(SumRow);
    std::atomic<std::uint64_t> total = 0;
    ForEachBand(width, height, [&](const Band& band) {
        std::uint64_t sum = 0;
        for (std::ptrdiff_t y = band.first; y < band.end; ++y)
            sum += sumRow(a.first + y * a.stride, b.first + y * b.stride, width);
        total += sum;
    });
    return total;
}

}  // namespace Kernels
#endif
