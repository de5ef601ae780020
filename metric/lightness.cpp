#include "metric/lightness.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <memory>

namespace Metric {

namespace {

// A sample of 8, 10, 14 or 16 bits is a whole number of these steps.
constexpr int kStepsPerUnit = 256;
constexpr int kUnits = 256;
constexpr float kTableEnd = kUnits;

/// Rows are the fractions, so that the lumas of bytes share the first row and stay in the nearest cache.
using Table = std::array<std::array<float, kUnits>, kStepsPerUnit>;

std::unique_ptr<const Table> MakeTable() {
    auto table = std::make_unique<Table>();
    for (std::size_t step = 0; step < kStepsPerUnit; ++step) {
        for (std::size_t unit = 0; unit < kUnits; ++unit) {
            const auto steps = static_cast<float>(unit * kStepsPerUnit + step);
            (*table)[step][unit] = Lightness(steps / kStepsPerUnit);
        }
    }
    return table;
}

}  // namespace

float Lightness(float luma) {
    const double t = luma / 255.0;
    const double exponent = 0.33333f;
    return static_cast<float>(t > 0.008856 ? 116 * std::pow(t, exponent) - 16 : 903.3 * t);
}

void LightnessRow(const float* luma, float* lightness, int count) {
    static const std::unique_ptr<const Table> table = MakeTable();

    for (int x = 0; x < count; ++x) {
        const bool inRange = luma[x] >= 0 && luma[x] < kTableEnd;
        const float steps = inRange ? luma[x] * kStepsPerUnit : 0;
        const auto index = static_cast<unsigned>(steps);
        const bool isSample = inRange && static_cast<float>(index) == steps;
        lightness[x] = isSample ? (*table)[index % kStepsPerUnit][index / kStepsPerUnit] : Lightness(luma[x]);
    }
}

}  // namespace Metric
