#include "kernels/sobel_squares.h"

#include "kernels/bands.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/sobel_squares.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/sobel_squares-inl.h"

#include <algorithm>
#include <atomic>
#include <cstddef>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

float GreatestInBand(const SobelPlanes<2>& planes, const Band& band) {
    const SobelFloats d;
    auto greatest = hn::Zero(d);
    ForEachSobelSquare(
        planes, band.first, band.end, [&](int x, int, const SobelVector(&squares)[2]) HWY_ATTR {
            const auto columns = hn::FirstN(d, static_cast<std::size_t>(planes.width - x));
            for (const auto& square : squares) {
                const auto isGreater = hn::And(columns, hn::Gt(square, greatest));  // not for a NaN
                greatest = hn::IfThenElse(isGreater, square, greatest);
            }
        });
    HWY_ALIGN float lanes[kSobelLanes];
    hn::Store(greatest, d, lanes);
    return *std::max_element(lanes, lanes + kSobelLanes);
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {
HWY_EXPORT(GreatestInBand);
}  // namespace

float GreatestSobelSquare(const SobelPlanes<2>& planes) {
    const auto greatestInBand = HWY_DYNAMIC_DISPATCH(GreatestInBand);
    std::atomic<float> greatest = 0;
    ForEachBand(planes.width, planes.height, [&](const Band& band) {
        const float ofBand = greatestInBand(planes, band);
        float before = greatest;
        while (before < ofBand && !greatest.compare_exchange_weak(before, ofBand)) continue;
    });
    return greatest;
}

}  // namespace Kernels
#endif
