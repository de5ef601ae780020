#include "metrics/blocking_line.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "metrics/blocking_line.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cstdint>
#include <limits>

HWY_BEFORE_NAMESPACE();
namespace Metric::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

constexpr int kBlock = 8;
constexpr float kLargestVertical = 255;

// A vector never spans more than a block: the line's length is whole vectors, and one more sample at its
// ends is all that the neighbours of a place need.
using Floats = hn::CappedTag<float, kBlock>;
using Integers = hn::Rebind<std::int32_t, Floats>;
using Vf = hn::Vec<Floats>;
using Vi = hn::Vec<Integers>;

constexpr Floats f;
constexpr Integers i;

HWY_INLINE Vf ToFloat(Vi v) {
    return hn::ConvertTo(f, v);
}

// The samples next to the line at the lanes' places, and what the differences across the line give there.
struct Place {
    Vf before, behind;
    Vi slope;  // of the step over the line
    Vi jump;   // the step's excess over the slopes beside it
    Vi busy;   // the magnitude of the slopes beside it
};

HWY_INLINE Place LookAt(const GridLine& line, int place) {
    const auto beyondBefore = hn::LoadU(f, line.Row(0) + place);
    const auto before = hn::LoadU(f, line.Row(1) + place);
    const auto behind = hn::LoadU(f, line.Row(2) + place);
    const auto beyondBehind = hn::LoadU(f, line.Row(3) + place);
    const auto left = hn::ConvertTo(i, hn::Sub(beyondBefore, before));
    const auto middle = hn::ConvertTo(i, hn::Sub(before, behind));
    const auto right = hn::ConvertTo(i, hn::Sub(behind, beyondBehind));
    const auto jump = hn::Sub(middle, hn::ShiftRight<1>(hn::Add(left, right)));
    return {before, behind, middle, jump, hn::Add(hn::Abs(left), hn::Abs(right))};
}

// What takes part at the lanes' places: the place and its neighbours within the block, n in all.
struct Window {
    hn::Mask<Integers> hasPrevious, hasNext;
    hn::Mask<Floats> hasPreviousF, hasNextF;
    Vi n;

    explicit HWY_INLINE Window(int place) {
        const auto inBlock = hn::And(hn::Iota(i, place), hn::Set(i, kBlock - 1));
        hasPrevious = hn::Ne(inBlock, hn::Zero(i));
        hasNext = hn::Ne(inBlock, hn::Set(i, kBlock - 1));
        hasPreviousF = hn::RebindMask(f, hasPrevious);
        hasNextF = hn::RebindMask(f, hasNext);
        n = hn::IfThenElse(hn::And(hasPrevious, hasNext), hn::Set(i, 3), hn::Set(i, 2));
    }

    HWY_INLINE Vi Sum(Vi previous, Vi own, Vi next) const {
        return hn::Add(hn::Add(hn::IfThenElseZero(hasPrevious, previous), own),
                       hn::IfThenElseZero(hasNext, next));
    }
    // In this order, which an absent term doesn't change.
    HWY_INLINE Vf Sum(Vf previous, Vf own, Vf next) const {
        return hn::Add(hn::Add(hn::IfThenElseZero(hasPreviousF, previous), own),
                       hn::IfThenElseZero(hasNextF, next));
    }
    // The change along the line: the one difference of two samples, or the half of both of three.
    HWY_INLINE Vi Change(Vf previous, Vf own, Vf next) const {
        const auto toPrevious = hn::IfThenElseZero(hasPreviousF, hn::Abs(hn::Sub(previous, own)));
        const auto toNext = hn::IfThenElseZero(hasNextF, hn::Abs(hn::Sub(own, next)));
        const auto sum = hn::ConvertTo(i, hn::Add(toPrevious, toNext));
        return hn::IfThenElse(hn::Eq(n, hn::Set(i, 3)), hn::ShiftRight<1>(sum), sum);
    }
};

// All divisions are of floats and in float. Where the measure divides in double and rounds to float it
// comes to the same: 53 bits are enough for a quotient of two numbers of 24 bits not to suffer from being
// rounded twice.
HWY_INLINE Vf StrengthAt(const GridLine& line, int place, int edgeLimit, float limit) {
    const Window window(place);
    const Place previous = LookAt(line, place - 1);
    const Place own = LookAt(line, place);
    const Place next = LookAt(line, place + 1);
    const auto one = hn::Set(i, 1);
    const auto n = ToFloat(window.n);

    const auto jump = hn::Abs(window.Sum(previous.jump, own.jump, next.jump));
    const auto s = hn::Div(ToFloat(jump), n);
    const auto h = hn::Mul(s, hn::Set(f, 0.5f));
    const auto change = hn::Add(window.Change(previous.before, own.before, next.before),
                                window.Change(previous.behind, own.behind, next.behind));
    const auto busy = window.Sum(previous.busy, own.busy, next.busy);
    const auto masked = [&](Vi activity) HWY_ATTR { return hn::Div(h, ToFloat(hn::Add(activity, one))); };
    const auto maskedSum = window.Sum(masked(previous.busy), masked(own.busy), masked(next.busy));
    const auto textured = hn::Mul(hn::Mul(s, masked(change)), hn::Div(maskedSum, n));

    const auto isFlat = hn::Lt(hn::Add(change, busy), hn::Add(window.n, one));
    const auto flat = hn::Mul(hn::Trunc(s), hn::Set(f, 16.0f));
    const auto strength = hn::IfThenElse(hn::RebindMask(f, isFlat), flat, textured);
    const auto limited = hn::IfThenElse(window.hasNextF, hn::Min(strength, hn::Set(f, limit)), strength);

    // The whole part of slope / n is above the limit.
    const auto slope = hn::Abs(window.Sum(previous.slope, own.slope, next.slope));
    const auto isEdge = hn::Gt(hn::Add(slope, one), hn::Mul(window.n, hn::Set(i, edgeLimit + 1)));
    return hn::IfThenElse(hn::RebindMask(f, isEdge), hn::Set(f, -1.0f), hn::Trunc(limited));
}

void StrengthsOfLine(const GridLine& line, int edgeLimit, float* HWY_RESTRICT strengths) {
    const float limit = line.IsVertical() ? kLargestVertical : std::numeric_limits<float>::max();
    for (int place = 0; place < line.Length(); place += static_cast<int>(hn::Lanes(f))) {
        hn::StoreU(StrengthAt(line, place, edgeLimit, limit), f, strengths + place);
    }
}

}  // namespace
}  // namespace Metric::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Metric {

namespace {
HWY_EXPORT(StrengthsOfLine);
}  // namespace

GridLine::GridLine(int longest) {
    for (auto& row : rows) row.resize(static_cast<std::size_t>(longest) + 2);
}

void GridLine::TakeVertical(const float* bottomRow, int width, int height, int x) {
    vertical = true;
    length = height;
    const std::array<float*, 4> to = {Row(0), Row(1), Row(2), Row(3)};
    const float* from = bottomRow + x - 1;
    for (int y = 0; y < height; ++y, from -= width) {
        for (std::size_t row = 0; row < 4; ++row) to[row][y] = from[row];
    }
}

void GridLine::TakeHorizontal(const float* bottomRow, int width, int y) {
    vertical = false;
    length = width;
    const float* from = bottomRow - std::ptrdiff_t{width} * (y - 1);
    for (int row = 0; row < 4; ++row, from -= width) std::copy_n(from, width, Row(row));
}

void MeasureStrengths(const GridLine& line, int edgeLimit, float* strengths) {
    HWY_DYNAMIC_DISPATCH(StrengthsOfLine)(line, edgeLimit, strengths);
}

}  // namespace Metric
#endif
