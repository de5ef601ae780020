#include "kernels/color_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/color_rows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/pixels-inl.h"

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

void LimitedRow(const ColorRows& rows, const LimitedSum& weights, float greatest, float* target, int count) {
    ForEachVector<float>(count, [&](auto d, int x) HWY_ATTR {
        auto sum = hn::Mul(hn::Set(d, weights.factor),
                           hn::Sub(hn::LoadU(d, rows.first + x), hn::Set(d, weights.offset)));
        sum = hn::Add(sum, hn::Mul(hn::Set(d, weights.second), hn::LoadU(d, rows.second + x)));
        sum = hn::Add(sum, hn::Mul(hn::Set(d, weights.third), hn::LoadU(d, rows.third + x)));
        // Not hn::Max: which zero or NaN that gives depends on the target.
        sum = hn::IfThenElseZero(hn::Gt(sum, hn::Zero(d)), sum);
        const auto limit = hn::Set(d, greatest);
        hn::StoreU(hn::IfThenElse(hn::Lt(sum, limit), sum, limit), d, target + x);
    });
}

void PlainRow(const ColorRows& rows, const PlainSum& weights, float* target, int count) {
    ForEachVector<float>(count, [&](auto d, int x) HWY_ATTR {
        auto sum = hn::Mul(hn::Set(d, weights.first), hn::LoadU(d, rows.first + x));
        sum = hn::Add(sum, hn::Mul(hn::Set(d, weights.second), hn::LoadU(d, rows.second + x)));
        sum = hn::Add(sum, hn::Mul(hn::Set(d, weights.third), hn::LoadU(d, rows.third + x)));
        hn::StoreU(hn::Add(sum, hn::Set(d, weights.offset)), d, target + x);
    });
}

bool LookUpValues(const float* HWY_RESTRICT table, const float* values, float* target, int count) {
    bool isComplete = true;
    ForEachVector<float>(count, [&](auto d, int x) HWY_ATTR {
        if (!isComplete) return;
        const hn::RebindToSigned<decltype(d)> ints;
        const auto value = hn::LoadU(d, values + x);
        const auto inRange = hn::And(hn::Ge(value, hn::Zero(d)), hn::Lt(value, hn::Set(d, float{kUnits})));
        const auto steps = hn::IfThenElseZero(inRange, hn::Mul(value, hn::Set(d, float{kStepsPerUnit})));
        const auto whole = hn::ConvertTo(ints, steps);
        const auto isPoint = hn::And(inRange, hn::Eq(hn::ConvertTo(d, whole), steps));
        const auto row = hn::And(whole, hn::Set(ints, kStepsPerUnit - 1));
        const auto index = hn::Add(hn::ShiftLeft<8>(row), hn::ShiftRight<8>(whole));
        static_assert(kStepsPerUnit == 1 << 8 && kUnits == 1 << 8);
        isComplete &= hn::AllTrue(d, isPoint);
        hn::StoreU(hn::GatherIndex(d, table, index), d, target + x);
    });
    return isComplete;
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

HWY_EXPORT(LimitedRow);
HWY_EXPORT(PlainRow);
HWY_EXPORT(LookUpValues);

void SumRowsLimited(const ColorRows& rows, const LimitedSum& weights, float greatest, float* target,
                    int count) {
    HWY_DYNAMIC_DISPATCH(LimitedRow)(rows, weights, greatest, target, count);
}

void SumRows(const ColorRows& rows, const PlainSum& weights, float* target, int count) {
    HWY_DYNAMIC_DISPATCH(PlainRow)(rows, weights, target, count);
}

bool LookUpRow(const float* table, const float* values, float* target, int count) {
    return HWY_DYNAMIC_DISPATCH(LookUpValues)(table, values, target, count);
}

}  // namespace Kernels
#endif
