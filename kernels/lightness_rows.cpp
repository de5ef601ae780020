#include "kernels/lightness_rows.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/lightness_rows.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/pixels-inl.h"

#include <limits>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

using namespace LightnessFormula;

constexpr double kUncertainty = 1e-12;
constexpr double kCurveBegins = 2.3;  // below it are the line and its end
constexpr int kTerms = 8;

/// (1 + d)^kExponent - 1 by its series.
template <class D, class V>
HWY_INLINE V PowerNearOne(D d, V distance) {
    double coefficients[kTerms + 1] = {1};
    for (int k = 1; k <= kTerms; ++k) coefficients[k] = coefficients[k - 1] * (kExponent - k + 1) / k;
    V sum = hn::Set(d, coefficients[kTerms]);
    for (int k = kTerms - 1; k > 0; --k) sum = hn::Add(hn::Mul(sum, distance), hn::Set(d, coefficients[k]));
    return hn::Mul(sum, distance);
}

bool NearPoints(const LightnessPoint* HWY_RESTRICT table, const float* luma, float* lightness, int count) {
    static_assert(sizeof(LightnessPoint) == 2 * sizeof(double));
    const double* const powers = &table->power;
    const double* const inverses = &table->inverse;
    bool isComplete = true;
    ForEachVector<double>(count, [&](auto d, int x) HWY_ATTR {
        const hn::Rebind<float, decltype(d)> floats;
        const hn::RebindToSigned<decltype(d)> longs;
        const hn::Rebind<std::int32_t, decltype(d)> ints;
        const auto set = [&](double value) HWY_ATTR { return hn::Set(d, value); };

        const auto value = hn::PromoteTo(d, hn::LoadU(floats, luma + x));
        const auto isReached = hn::And(hn::Ge(value, set(kCurveBegins)), hn::Lt(value, set(kLightnessEnd)));
        const auto reached = hn::IfThenElse(isReached, value, set(kWhite));
        const auto nearest = hn::DemoteTo(ints, hn::Add(hn::Mul(reached, set(kPointsPerUnit)), set(0.5)));
        const auto point = hn::Mul(hn::PromoteTo(d, nearest), set(1.0 / kPointsPerUnit));
        const auto index = hn::ShiftLeft<1>(hn::PromoteTo(longs, nearest));  // two doubles a point
        const auto distance = hn::Mul(hn::Sub(reached, point), hn::GatherIndex(d, inverses, index));
        const auto power = hn::GatherIndex(d, powers, index);
        const auto curve = hn::Sub(hn::Add(power, hn::Mul(power, PowerNearOne(d, distance))), set(kOffset));

        const auto low = hn::PromoteTo(d, hn::DemoteTo(floats, hn::Sub(curve, set(kUncertainty))));
        const auto high = hn::PromoteTo(d, hn::DemoteTo(floats, hn::Add(curve, set(kUncertainty))));
        const auto isCertain = hn::And(hn::Eq(low, high), isReached);
        isComplete &= hn::AllTrue(d, isCertain);
        const auto certain = hn::IfThenElse(isCertain, low, set(std::numeric_limits<double>::quiet_NaN()));
        hn::StoreU(hn::DemoteTo(floats, certain), floats, lightness + x);
    });
    return isComplete;
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

HWY_EXPORT(NearPoints);

bool LightnessNearPoints(const LightnessPoint* table, const float* luma, float* lightness, int count) {
    return HWY_DYNAMIC_DISPATCH(NearPoints)(table, luma, lightness, count);
}

}  // namespace Kernels
#endif
