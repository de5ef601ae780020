#include "kernels/ordered_sum.h"

#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/ordered_sum.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <limits>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// Pixels that are added together. Fewer cost more reductions, more are refused more often.
constexpr int kRun = 256;

HWY_INLINE auto LoadNumbers(hn::ScalableTag<float> d, const float* pixels) {
    return hn::LoadU(d, pixels);
}

HWY_INLINE auto LoadNumbers(hn::ScalableTag<double> d, const float* pixels) {
    return hn::PromoteTo(d, hn::LoadU(hn::Rebind<float, decltype(d)>(), pixels));
}

// The 2^e of 2^e <= sum < 2^(e+1).
template <class Number>
HWY_INLINE Number RangeOf(Number sum) {
    const hn::CappedTag<Number, 1> one;
    return hn::GetLane(hn::And(hn::Set(one, sum), hn::Set(one, std::numeric_limits<Number>::infinity())));
}

// Adds `count` pixels, whole vectors of them, to `sum` as if one after the other; false, and nothing done, if
// that can't be known. `range` is that of the sum, or else the pixels aren't added.
//
// Let 2^e <= sum < 2^(e+1), u the unit in the last place of numbers in this range, q(v) the multiple of u
// nearest to v. As long as the chain stays strictly inside the range, its states are multiples of u and
// adding v adds q(v), unless v lies half way between two multiples, where the state decides. So without
// half ways the chain is a sum of multiples that are added exactly, and such a sum has no order.
//
// - Adding and subtracting middle = 1.5 * 2^e gives q(v) for |v| < 2^(e-1), because the first sum is in the
//   range and rounded to u. A half way shows as |v - q(v)| = u / 2. A greater |v| gives at least 2^(e-1).
// - `reach`, the sum of all |q(v)|, bounds what the chain goes up or down. The test makes it less than
//   2^(e-1), which excludes the greater |v|. Sums of multiples of u are exact below 2^(e+1) and rounding is
//   monotonic, so a reach that is computed as small is exact, and the total with it.
// - NaN and infinity, a sum of 0 or below, and ranges too small for u / 2 fail a comparison.
template <class Number>
HWY_INLINE bool AddRun(const float* HWY_RESTRICT pixels, int count, Number range, Number& sum) {
    const hn::ScalableTag<Number> d;
    const int step = static_cast<int>(hn::Lanes(d));
    const auto middle = hn::Set(d, range * Number{1.5});
    auto total = hn::Zero(d);
    auto reach = hn::Zero(d);
    auto error = hn::Zero(d);
    for (int i = 0; i < count; i += step) {
        const auto numbers = LoadNumbers(d, pixels + i);
        const auto rounded = hn::Sub(hn::Add(numbers, middle), middle);
        error = hn::Max(error, hn::Abs(hn::Sub(numbers, rounded)));
        total = hn::Add(total, rounded);
        reach = hn::Add(reach, hn::Abs(rounded));
    }
    const Number halfUnit = range * std::numeric_limits<Number>::epsilon() / 2;
    if (!(hn::GetLane(hn::MaxOfLanes(d, error)) < halfUnit)) return false;
    const Number bound = hn::GetLane(hn::SumOfLanes(d, reach));
    if (!(sum - bound > range && sum + bound < 2 * range)) return false;
    sum += hn::GetLane(hn::SumOfLanes(d, total));
    return true;
}

template <class Number>
HWY_INLINE Number AddRow(Number sum, const float* row, int width) {
    const int step = static_cast<int>(hn::Lanes(hn::ScalableTag<Number>()));
    // The range is taken anew only after a run that couldn't be added: so a run needn't wait for the sum of
    // the one before, which makes this twice as fast.
    Number range = RangeOf(sum);
    for (int x = 0; x < width;) {
        const int end = std::min(x + kRun, width);
        const int whole = (end - x) / step * step;
        if (AddRun(row + x, whole, range, sum)) x += whole;
        if (x == end) continue;
        for (; x < end; ++x) sum += static_cast<Number>(row[x]);
        range = RangeOf(sum);
    }
    return sum;
}

float AddRowInFloat(float sum, const float* row, int width) {
    return AddRow(sum, row, width);
}
double AddRowInDouble(double sum, const float* row, int width) {
    return AddRow(sum, row, width);
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {
HWY_EXPORT(AddRowInFloat);
HWY_EXPORT(AddRowInDouble);
}  // namespace

float OrderedSum(float sum, const float* plane, int stride, int width, int height) {
    const auto addRow = HWY_DYNAMIC_DISPATCH(AddRowInFloat);
    for (int y = 0; y < height; ++y) sum = addRow(sum, Row(plane, stride, y), width);
    return sum;
}

double OrderedSum(double sum, const float* plane, int stride, int width, int height) {
    const auto addRow = HWY_DYNAMIC_DISPATCH(AddRowInDouble);
    for (int y = 0; y < height; ++y) sum = addRow(sum, Row(plane, stride, y), width);
    return sum;
}

}  // namespace Kernels
#endif
