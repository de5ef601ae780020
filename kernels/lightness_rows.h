#pragma once

namespace Kernels {

/// The formula of lightness, in double and rounded to float at the end: kFactor * t^kExponent - kOffset with
/// t = luma / kWhite where t is above kLinearEnd, else kSlope * t.
namespace LightnessFormula {
inline constexpr double kWhite = 255;
inline constexpr double kLinearEnd = 0.008856;
inline constexpr double kSlope = 903.3;
inline constexpr double kFactor = 116;
inline constexpr double kOffset = 16;
inline constexpr double kExponent = 0.33333f;  // widened from float
}  // namespace LightnessFormula

/// The points of the table that `LightnessNearPoints` takes: of luma i / kPointsPerUnit for entry i, up to
/// and with `kLightnessEnd`.
struct LightnessPoint {
    double power;    ///< kFactor * (luma / kWhite)^kExponent
    double inverse;  ///< 1 / luma
};
inline constexpr int kPointsPerUnit = 16;
inline constexpr int kLightnessEnd = 256;
inline constexpr int kLightnessPoints = kLightnessEnd * kPointsPerUnit + 1;

/// Lightness of `count` lumas; not a number where the float isn't certain, and for lumas below 2.3 and from
/// `kLightnessEnd` on. True if there is none of those.
///
/// The power of the nearest point, times the binomial series of what is between: with at most 1/32 to a
/// point, and points from 2.3 on, eight terms leave less than 1e-16. With all roundings that is within some
/// 1e-13 of the formula's double, whose own roundings are of that size too; so where everything within 1e-12
/// rounds to the same float, it is the formula's. One in some million isn't certain. Any thread.
bool LightnessNearPoints(const LightnessPoint* table, const float* luma, float* lightness, int count);

}  // namespace Kernels
