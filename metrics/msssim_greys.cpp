#include "metrics/msssim_greys.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "metrics/msssim_greys.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <hwy/contrib/math/math-inl.h>

#include "kernels/greys-inl.h"
#include "kernels/pixels-inl.h"

#include <algorithm>

HWY_BEFORE_NAMESPACE();
namespace Metric::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
namespace kn = Kernels::HWY_NAMESPACE;

void WeighRow(const float* values, int width, double weight, double* logarithms) {
    kn::ForEachVector<double>(width, [=](auto d, int x) HWY_ATTR {
        const hn::Rebind<float, decltype(d)> f;
        const auto value = hn::PromoteTo(d, hn::LoadU(f, values + x));
        const auto usual = hn::And(hn::Gt(value, hn::Set(d, 1e-20)), hn::Lt(value, hn::Set(d, 1e20)));
        const auto hasNoPower = hn::Or(hn::IsNaN(value), hn::Lt(value, hn::Zero(d)));
        const auto logarithm = hn::Log(d, hn::IfThenElse(usual, value, hn::Set(d, 1.0)));
        const auto otherwise = hn::IfThenElse(hasNoPower, hn::NaN(d), hn::Set(d, kUnsureLogarithm));
        hn::StoreU(hn::IfThenElse(usual, hn::Mul(logarithm, hn::Set(d, weight)), otherwise), d,
                   logarithms + x);
    });
}

void AddCoarserRow(const double* coarser, int coarserWidth, int width, double* sums) {
    const auto add = [=](auto d, int x) HWY_ATTR {
        const auto sum = hn::LoadU(d, coarser + x);
        hn::Vec<decltype(d)> left, right;
        hn::LoadInterleaved2(d, sums + 2 * x, left, right);
        hn::StoreInterleaved2(hn::Add(left, sum), hn::Add(right, sum), d, sums + 2 * x);
    };
    const int covered = std::min(coarserWidth, width / 2);
    kn::ForEachVector<double>(covered, add);
    for (int x = 2 * covered; x < width; ++x) sums[x] += coarser[std::min(x / 2, coarserWidth - 1)];
}

int GreyRow(const double* sums, int width, std::uint8_t* greys, int* unsure) {
    int unsureCount = 0;
    kn::ForEachVector<double>(width, [&](auto d, int x) HWY_ATTR {
        const hn::Rebind<std::int32_t, decltype(d)> integers;
        const hn::Rebind<std::uint8_t, decltype(d)> bytes;
        const auto sum = hn::LoadU(d, sums + x);
        const auto isNumber = hn::Not(hn::IsNaN(sum));
        const auto limit = hn::Set(d, 10.0);  // a product of 22000, which would wrap around many times
        const auto isUsual = hn::Lt(hn::Abs(sum), limit);
        const auto usual = hn::IfThenElseZero(isUsual, sum);

        const auto difference = hn::Mul(hn::Sub(hn::Set(d, 1.0), hn::Exp(d, usual)), hn::Set(d, 255.0));
        // Around 0, where both sides are cut to 0, nothing changes.
        const auto nearest = hn::Round(difference);
        const auto isNear = hn::Lt(hn::Abs(hn::Sub(difference, nearest)), hn::Set(d, 1e-6));
        const auto changes = hn::And(isNear, hn::Ne(nearest, hn::Zero(d)));
        const auto isUnsure = hn::And(isNumber, hn::Or(hn::Not(isUsual), changes));
        if (HWY_UNLIKELY(!hn::AllFalse(d, isUnsure))) {
            HWY_ALIGN double lanes[hn::MaxLanes(d)];
            hn::Store(hn::IfThenElseZero(isUnsure, hn::Set(d, 1.0)), d, lanes);
            for (int lane = 0; lane < static_cast<int>(hn::Lanes(d)); ++lane)
                if (lanes[lane] != 0) unsure[unsureCount++] = x + lane;
        }
        const auto cut = hn::DemoteTo(integers, hn::IfThenElseZero(isUsual, difference));
        hn::StoreU(kn::LowBytes(integers, cut), bytes, greys + x);
    });
    return unsureCount;
}

}  // namespace
}  // namespace Metric::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Metric {

namespace {
HWY_EXPORT(WeighRow);
HWY_EXPORT(AddCoarserRow);
HWY_EXPORT(GreyRow);
}  // namespace

void WeighLogarithms(const float* values, int width, double weight, double* logarithms) {
    HWY_DYNAMIC_DISPATCH(WeighRow)(values, width, weight, logarithms);
}

void AddCoarser(const double* coarser, int coarserWidth, int width, double* sums) {
    HWY_DYNAMIC_DISPATCH(AddCoarserRow)(coarser, coarserWidth, width, sums);
}

int GreysOfSums(const double* sums, int width, std::uint8_t* greys, int* unsure) {
    return HWY_DYNAMIC_DISPATCH(GreyRow)(sums, width, greys, unsure);
}

}  // namespace Metric
#endif
