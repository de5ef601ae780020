#include "metric/lightness.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>

#include "kernels/color_rows.h"

namespace Metric {

namespace {

using Kernels::kStepsPerUnit;
using Kernels::kUnits;

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
    constexpr int kValuesAtOnce = 64;

    std::array<float, kValuesAtOnce> found;
    for (int x = 0; x < count; x += kValuesAtOnce) {
        const int some = std::min(kValuesAtOnce, count - x);
        if (Kernels::LookUpRow(table->front().data(), luma + x, found.data(), some))
            std::copy_n(found.begin(), some, lightness + x);
        else
            std::transform(luma + x, luma + x + some, lightness + x, Lightness);
    }
}

}  // namespace Metric
