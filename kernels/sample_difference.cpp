#include "kernels/sample_difference.h"

#include "kernels/bands.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/sample_difference.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <atomic>
#include <numeric>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

/// So many pixels of a row of bytes at once: the sum of all lanes, 16384 * 255^2 at most, is below 2^31.
constexpr int kPixelsAtOnce = 16384;

/// The pixels from `x` on, one at a time.
template <class Sample>
std::uint64_t SumRest(const Sample* a, const Sample* b, int x, int width) {
    std::uint64_t total = 0;
    for (; x < width; ++x) {
        const std::int64_t difference = std::int64_t{a[x]} - b[x];
        total += static_cast<std::uint64_t>(difference * difference);
    }
    return total;
}

std::uint64_t SumBytes(const std::uint8_t* HWY_RESTRICT a, const std::uint8_t* HWY_RESTRICT b, int width) {
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
    return total + SumRest(a, b, x, width);
}

std::uint64_t SumWords(const std::uint16_t* HWY_RESTRICT a, const std::uint16_t* HWY_RESTRICT b, int width) {
    const hn::ScalableTag<std::uint64_t> d;
    const hn::Rebind<std::uint32_t, decltype(d)> squares;
    const hn::Rebind<std::uint16_t, decltype(d)> words;
    const int step = static_cast<int>(hn::Lanes(d));
    auto sums = hn::Zero(d);
    int x = 0;
    for (; x + step <= width; x += step) {
        const auto p = hn::LoadU(words, a + x);
        const auto q = hn::LoadU(words, b + x);
        const auto difference =
            hn::PromoteTo(squares, hn::Or(hn::SaturatedSub(p, q), hn::SaturatedSub(q, p)));
        sums = hn::Add(sums, hn::PromoteTo(d, hn::Mul(difference, difference)));
    }
    HWY_ALIGN std::uint64_t lanes[hn::MaxLanes(d)];
    hn::Store(sums, d, lanes);
    return std::accumulate(lanes, lanes + step, SumRest(a, b, x, width));
}

std::uint64_t SumRow(const std::uint8_t* a, const std::uint8_t* b, int sampleBytes, int width) {
    if (sampleBytes == 1) return SumBytes(a, b, width);
    return SumWords(reinterpret_cast<const std::uint16_t*>(a), reinterpret_cast<const std::uint16_t*>(b),
                    width);
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

HWY_EXPORT(SumRow);

std::uint64_t SumSquaredDifferences(const SampleRows& a, const SampleRows& b, int sampleBytes, int width,
                                    int height) {
    constexpr std::int64_t kPixelsPerThread = 4 * kLightPixelsPerThread;  // the lightest of all
    const auto sumRow = HWY_DYNAMIC_DISPATCH(SumRow);
    std::atomic<std::uint64_t> total = 0;
    ForEachBand(
        width, height,
        [&](const Band& band) {
            std::uint64_t sum = 0;
            for (std::ptrdiff_t y = band.first; y < band.end; ++y)
                sum += sumRow(a.first + y * a.stride, b.first + y * b.stride, sampleBytes, width);
            total += sum;
        },
        kPixelsPerThread);
    return total;
}

}  // namespace Kernels
#endif
