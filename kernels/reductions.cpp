#include "kernels/reductions.h"

#include "kernels/bands.h"
#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/reductions.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// Adds values(d, x), the doubles of the pixels from x on, as many as d has lanes, to the sums of a row.
template <class Values>
HWY_INLINE void AddToSums(int width, const Values& values, double* HWY_RESTRICT sums) {
    const hn::CappedTag<double, kSumLanes> d;  // a vector never spans more than the sums
    const int step = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + kSumLanes <= width; x += kSumLanes) {
        for (int lane = 0; lane < kSumLanes; lane += step) {
            hn::Store(hn::Add(hn::Load(d, sums + lane), values(d, x + lane)), d, sums + lane);
        }
    }
    const hn::CappedTag<double, 1> one;
    for (; x < width; ++x) {
        double* sum = sums + x % kSumLanes;
        hn::Store(hn::Add(hn::Load(one, sum), values(one, x)), one, sum);
    }
}

double TotalOf(const double* sums) {
    return std::accumulate(sums, sums + kSumLanes, 0.0);
}

void AddSquaredDifferences(const float* HWY_RESTRICT first, const float* HWY_RESTRICT second, int width,
                           double* HWY_RESTRICT sums) {
    AddToSums(
        width,
        [=](auto d, int x) HWY_ATTR {
            const hn::Rebind<float, decltype(d)> f;
            const auto difference = hn::Sub(hn::LoadU(f, first + x), hn::LoadU(f, second + x));
            const auto wide = hn::PromoteTo(d, difference);
            return hn::Mul(wide, wide);
        },
        sums);
}

double SumSquaredDifferences(const float* first, const float* second, int width) {
    HWY_ALIGN double sums[kSumLanes] = {};
    AddSquaredDifferences(first, second, width, sums);
    return TotalOf(sums);
}

double SumSquaresOfMadeRow(const PixelPairs& make, int y, int width) {
    constexpr int kPixelsAtOnce = 512;
    static_assert(kPixelsAtOnce % kSumLanes == 0);
    HWY_ALIGN float first[kPixelsAtOnce];
    HWY_ALIGN float second[kPixelsAtOnce];
    HWY_ALIGN double sums[kSumLanes] = {};
    for (int x = 0; x < width; x += kPixelsAtOnce) {
        const int count = std::min(kPixelsAtOnce, width - x);
        make(x, y, count, first, second);
        AddSquaredDifferences(first, second, count, sums);
    }
    return TotalOf(sums);
}

double SumPixels(const float* HWY_RESTRICT row, int width) {
    HWY_ALIGN double sums[kSumLanes] = {};
    AddToSums(
        width,
        [=](auto d, int x) HWY_ATTR {
            const hn::Rebind<float, decltype(d)> f;
            return hn::PromoteTo(d, hn::LoadU(f, row + x));
        },
        sums);
    return TotalOf(sums);
}

double MaxPixel(const float* HWY_RESTRICT row, int width) {
    const hn::ScalableTag<float> d;
    const int step = static_cast<int>(hn::Lanes(d));
    // Not hn::Max and hn::MaxOfLanes: what those give for a NaN or an infinity depends on the target.
    auto greatest = hn::Set(d, -std::numeric_limits<float>::infinity());
    int x = 0;
    for (; x + step <= width; x += step) {
        const auto pixels = hn::LoadU(d, row + x);
        greatest = hn::IfThenElse(hn::Gt(pixels, greatest), pixels, greatest);
    }
    HWY_ALIGN float lanes[hn::MaxLanes(d)];
    hn::Store(greatest, d, lanes);
    float result = *std::max_element(lanes, lanes + step);
    for (; x < width; ++x) {
        if (row[x] > result) result = row[x];
    }
    return result;
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {

HWY_EXPORT(SumSquaredDifferences);
HWY_EXPORT(SumSquaresOfMadeRow);
HWY_EXPORT(SumPixels);
HWY_EXPORT(MaxPixel);

// The rows' values wait here for their turn; on the stack, so that a call allocates nothing.
constexpr int kRowsAtOnce = 2048;

// Makes valueOfRow(y) for every row on a team and hands the values to `take` from the top row downward.
template <class ValueOfRow, class Take>
void TakeRowsInOrder(int width, int height, const ValueOfRow& valueOfRow, const Take& take) {
    std::array<double, kRowsAtOnce> values;
    for (int first = 0; first < height; first += kRowsAtOnce) {
        const int rows = std::min(kRowsAtOnce, height - first);
        ForEachBand(
            width, rows,
            [&](const Band& band) {
                for (int y = band.first; y < band.end; ++y) {
                    values[static_cast<std::size_t>(y)] = valueOfRow(first + y);
                }
            },
            kLightPixelsPerThread);
        std::for_each_n(values.begin(), rows, take);
    }
}

}  // namespace

double NormDiffL2(const float* first, int firstStride, const float* second, int secondStride, int width,
                  int height, AccuracyHint) {
    if (width <= 0 || height <= 0) return 0;
    const auto sumRow = HWY_DYNAMIC_DISPATCH(SumSquaredDifferences);
    double total = 0;
    TakeRowsInOrder(
        width, height,
        [=](int y) { return sumRow(Row(first, firstStride, y), Row(second, secondStride, y), width); },
        [&](double sum) { total += sum; });
    return std::sqrt(total);
}

double NormDiffL2AsRead(const PixelPairs& make, int width, int height, AccuracyHint) {
    if (width <= 0 || height <= 0) return 0;
    const auto sumRow = HWY_DYNAMIC_DISPATCH(SumSquaresOfMadeRow);
    double total = 0;
    TakeRowsInOrder(
        width, height, [&](int y) { return sumRow(make, y, width); }, [&](double sum) { total += sum; });
    return std::sqrt(total);
}

double Mean(const float* plane, int stride, int width, int height, AccuracyHint) {
    if (width <= 0 || height <= 0) return 0;
    const auto sumRow = HWY_DYNAMIC_DISPATCH(SumPixels);
    double total = 0;
    TakeRowsInOrder(
        width, height, [=](int y) { return sumRow(Row(plane, stride, y), width); },
        [&](double sum) { total += sum; });
    return total / static_cast<double>(std::int64_t{width} * height);
}

float Max(const float* plane, int stride, int width, int height) {
    double greatest = -std::numeric_limits<double>::infinity();
    if (width <= 0 || height <= 0) return static_cast<float>(greatest);
    const auto maxRow = HWY_DYNAMIC_DISPATCH(MaxPixel);
    TakeRowsInOrder(
        width, height, [=](int y) { return maxRow(Row(plane, stride, y), width); },
        [&](double pixel) { greatest = std::max(greatest, pixel); });
    return static_cast<float>(greatest) + 0.0f;  // which of the two zeros came first depends on the target
}

}  // namespace Kernels
#endif
