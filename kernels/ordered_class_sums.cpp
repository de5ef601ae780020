#include "kernels/ordered_class_sums.h"

#include "kernels/rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/ordered_class_sums.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cstring>
#include <limits>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// Pixels that are added together, as in `OrderedSum`.
constexpr int kRun = 256;

using Floats = hn::ScalableTag<float>;
using Vector = hn::Vec<Floats>;

// What belongs to the class of each lane.
struct ByClass {
    Vector first, second, third;

    HWY_INLINE Vector Choose(hn::Mask<Floats> isSecond, hn::Mask<Floats> isThird) const {
        return hn::IfThenElse(isThird, third, hn::IfThenElse(isSecond, second, first));
    }
};

// What a run adds to each class, if that can be known.
struct Run {
    ClassSums totals;
    float reach;    // no class goes farther up or down
    bool halfWays;  // a pixel lies half way between two numbers of the size of its sum
};

// The sums' powers of two: 2^e of 2^e <= sum < 2^(e+1).
HWY_INLINE ClassSums RangesOf(const ClassSums& sums) {
    const hn::CappedTag<float, 1> one;
    ClassSums ranges;
    for (std::size_t i = 0; i < ranges.size(); ++i) {
        const auto exponent = hn::Set(one, std::numeric_limits<float>::infinity());
        ranges[i] = hn::GetLane(hn::And(hn::Set(one, sums[i]), exponent));
    }
    return ranges;
}

// The method is that of `OrderedSum`, where it is proved. Here a lane's unit is that of its class, and one
// reach bounds all classes: the sum of the magnitudes of all rounded pixels. As these have different units it
// may be rounded itself, by less than the thousandth that is added to it.
HWY_INLINE Run TakeRun(const float* HWY_RESTRICT pixels, const std::uint8_t* HWY_RESTRICT classes, int count,
                       const ClassSums& ranges) {
    const Floats d;
    const hn::Rebind<std::int32_t, Floats> integers;
    const hn::Rebind<std::uint8_t, Floats> bytes;
    const auto scaled = [&](float factor) HWY_ATTR {
        return ByClass{hn::Set(d, ranges[0] * factor), hn::Set(d, ranges[1] * factor),
                       hn::Set(d, ranges[2] * factor)};
    };
    const ByClass middles = scaled(1.5f);
    const ByClass halfUnits = scaled(std::numeric_limits<float>::epsilon() / 2);
    auto first = hn::Zero(d), second = hn::Zero(d), third = hn::Zero(d), reach = hn::Zero(d);
    auto excess = hn::Set(d, -1.0f);
    for (int i = 0; i < count; i += static_cast<int>(hn::Lanes(d))) {
        const auto number = hn::LoadU(d, pixels + i);
        const auto kind = hn::PromoteTo(integers, hn::LoadU(bytes, classes + i));
        const auto isSecond = hn::RebindMask(d, hn::Eq(kind, hn::Set(integers, 1)));
        const auto isThird = hn::RebindMask(d, hn::Eq(kind, hn::Set(integers, 2)));
        const auto middle = middles.Choose(isSecond, isThird);
        const auto rounded = hn::Sub(hn::Add(number, middle), middle);
        const auto error = hn::Abs(hn::Sub(number, rounded));
        excess = hn::Max(excess, hn::Sub(error, halfUnits.Choose(isSecond, isThird)));
        reach = hn::Add(reach, hn::Abs(rounded));
        const auto isFirst = hn::Not(hn::Or(isSecond, isThird));
        first = hn::Add(first, hn::IfThenElseZero(isFirst, rounded));
        second = hn::Add(second, hn::IfThenElseZero(isSecond, rounded));
        third = hn::Add(third, hn::IfThenElseZero(isThird, rounded));
    }
    const auto total = [&](Vector sums) HWY_ATTR { return hn::GetLane(hn::SumOfLanes(d, sums)); };
    return {{total(first), total(second), total(third)},
            total(reach) * 1.001f,
            !(hn::GetLane(hn::MaxOfLanes(d, excess)) < 0)};
}

// Adds a run of whole vectors to sums in these ranges; false, and nothing done, if that can't be done at
// once.
HWY_INLINE bool AddRun(const float* pixels, const std::uint8_t* classes, int count, const ClassSums& ranges,
                       ClassSums& sums) {
    const Run run = TakeRun(pixels, classes, count, ranges);
    if (run.halfWays) return false;
    for (std::size_t i = 0; i < sums.size(); ++i) {
        const bool stays = sums[i] - run.reach > ranges[i] && sums[i] + run.reach < 2 * ranges[i];
        const auto isPresent = [&] {
            return std::memchr(classes, static_cast<int>(i), static_cast<std::size_t>(count)) != nullptr;
        };
        if (!stays && isPresent()) return false;
    }
    for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += run.totals[i];
    return true;
}

void AddRow(const float* row, const std::uint8_t* classes, int width, ClassSums& sums) {
    const int step = static_cast<int>(hn::Lanes(Floats()));
    // The ranges are taken anew only after a run that couldn't be added: so a run needn't wait for the sums
    // of the one before.
    ClassSums ranges = RangesOf(sums);
    for (int x = 0; x < width;) {
        const int end = std::min(x + kRun, width);
        const int whole = (end - x) / step * step;
        if (AddRun(row + x, classes + x, whole, ranges, sums)) x += whole;
        if (x == end) continue;
        for (; x < end; ++x) sums[classes[x]] += row[x];
        ranges = RangesOf(sums);
    }
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {
HWY_EXPORT(AddRow);
}  // namespace

void AddInOrder(ClassSums& sums, const float* plane, int stride, const std::uint8_t* classes, int classStride,
                int width, int height) {
    const auto addRow = HWY_DYNAMIC_DISPATCH(AddRow);
    for (int y = 0; y < height; ++y) addRow(Row(plane, stride, y), Row(classes, classStride, y), width, sums);
}

}  // namespace Kernels
#endif
