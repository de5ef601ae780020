#include "kernels/smallest.h"

#include "kernels/reductions.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/smallest.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cmath>
#include <limits>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// The sum of the values below `limit`, of which `found` receives the number.
double SumBelow(const float* values, int count, float limit, int& found) {
    const hn::CappedTag<double, kSumLanes> d;  // a vector never spans more than the sums
    const hn::Rebind<float, decltype(d)> f;
    const int step = static_cast<int>(hn::Lanes(d));
    HWY_ALIGN double sums[kSumLanes] = {};
    found = 0;
    int i = 0;
    for (; i + kSumLanes <= count; i += kSumLanes) {
        for (int lane = 0; lane < kSumLanes; lane += step) {
            const auto value = hn::LoadU(f, values + i + lane);
            const auto isBelow = hn::Lt(value, hn::Set(f, limit));
            const auto kept = hn::PromoteTo(d, hn::IfThenElseZero(isBelow, value));
            hn::Store(hn::Add(hn::Load(d, sums + lane), kept), d, sums + lane);
            found += static_cast<int>(hn::CountTrue(f, isBelow));
        }
    }
    for (; i < count; ++i) {
        if (!(values[i] < limit)) continue;
        sums[i % kSumLanes] += static_cast<double>(values[i]);
        ++found;
    }
    double total = 0;
    for (double sum : sums) total += sum;
    return total;
}

// Puts the values from `low` to `high` to `within`, which has room for `count`, and returns their number;
// `below` receives the number of the smaller ones.
int SelectWithin(const float* values, int count, float low, float high, float* within, int& below) {
    const hn::ScalableTag<float> d;
    const int step = static_cast<int>(hn::Lanes(d));
    int found = 0;
    below = 0;
    int i = 0;
    for (; i + step <= count; i += step) {
        const auto value = hn::LoadU(d, values + i);
        const auto isBelow = hn::Lt(value, hn::Set(d, low));
        const auto isWithin = hn::AndNot(isBelow, hn::Le(value, hn::Set(d, high)));
        below += static_cast<int>(hn::CountTrue(d, isBelow));
        hn::StoreU(hn::Compress(value, isWithin), d, within + found);  // the rest of it is overwritten next
        found += static_cast<int>(hn::CountTrue(d, isWithin));
    }
    for (; i < count; ++i) {
        if (values[i] < low) {
            ++below;
        } else if (values[i] <= high) {
            within[found++] = values[i];
        }
    }
    return found;
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {

HWY_EXPORT(SumBelow);
HWY_EXPORT(SelectWithin);

constexpr int kSampleStep = 127;  // odd, so that the samples walk through the columns of a picture

// The value at place `place` of the sorted values, which are reordered.
float ValueAt(int place, float* values, int count) {
    std::nth_element(values, values + place, values + count);
    return values[place];
}

// The same, of values that stay. Samples tell between which values it must lie; only those few are looked at
// closely. If the samples misled, all are.
float ValueAt(int place, const float* values, int count, float* scratch) {
    const int samples = count / kSampleStep;
    for (int i = 0; i < samples; ++i) scratch[i] = values[i * kSampleStep];
    const int expected = place / kSampleStep;
    const int error =
        8 + static_cast<int>(6 * std::sqrt(expected));  // six standard deviations of a random sample
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const float low = expected < error ? -kInfinity : ValueAt(expected - error, scratch, samples);
    const float high = expected + error >= samples ? kInfinity : ValueAt(expected + error, scratch, samples);

    int below = 0;
    const int found = HWY_DYNAMIC_DISPATCH(SelectWithin)(values, count, low, high, scratch, below);
    if (place >= below && place < below + found) return ValueAt(place - below, scratch, found);
    std::copy_n(values, count, scratch);
    return ValueAt(place, scratch, count);
}

}  // namespace

double MeanOfSmallest(const float* values, int count, int smallest, float* scratch) {
    const float greatest = ValueAt(smallest - 1, values, count, scratch);
    int below = 0;
    const double sum = HWY_DYNAMIC_DISPATCH(SumBelow)(values, count, greatest, below);
    return (sum + static_cast<double>(greatest) * (smallest - below)) / smallest;
}

}  // namespace Kernels
#endif
