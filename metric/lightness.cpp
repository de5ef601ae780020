#include "metric/lightness.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>

#include "kernels/color_rows.h"
#include "kernels/lightness_rows.h"

namespace Metric {

namespace {

using namespace Kernels::LightnessFormula;
using Kernels::kStepsPerUnit;
using Kernels::kUnits;

struct Tables {
    /// Lightness of all samples. Rows are the fractions, so that the lumas of bytes share the first row and
    /// stay in the nearest cache.
    std::array<std::array<float, kUnits>, kStepsPerUnit> samples;
    std::array<Kernels::LightnessPoint, Kernels::kLightnessPoints> points;
};

std::unique_ptr<const Tables> MakeTables() {
    auto tables = std::make_unique<Tables>();
    for (std::size_t step = 0; step < kStepsPerUnit; ++step) {
        for (std::size_t unit = 0; unit < kUnits; ++unit) {
            const auto steps = static_cast<float>(unit * kStepsPerUnit + step);
            tables->samples[step][unit] = Lightness(steps / kStepsPerUnit);
        }
    }
    for (std::size_t i = 0; i < tables->points.size(); ++i) {
        const double luma = static_cast<double>(i) / Kernels::kPointsPerUnit;
        tables->points[i] = {kFactor * std::pow(luma / kWhite, kExponent), 1 / luma};
    }
    return tables;
}

const Tables& GetTables() {
    static const std::unique_ptr<const Tables> tables = MakeTables();
    return *tables;
}

}  // namespace

float Lightness(float luma) {
    const double t = luma / kWhite;
    return static_cast<float>(t > kLinearEnd ? kFactor * std::pow(t, kExponent) - kOffset : kSlope * t);
}

void MakeLightnessTables() {
    GetTables();
}

void LightnessRow(const float* luma, float* lightness, int count) {
    const Tables& tables = GetTables();
    constexpr int kValuesAtOnce = 64;

    bool areSamples = true;  // until one isn't: then the others won't be either
    std::array<float, kValuesAtOnce> row;
    for (int x = 0; x < count; x += kValuesAtOnce) {
        const int some = std::min(kValuesAtOnce, count - x);
        areSamples =
            areSamples && Kernels::LookUpRow(tables.samples.front().data(), luma + x, row.data(), some);
        if (!areSamples && !Kernels::LightnessNearPoints(tables.points.data(), luma + x, row.data(), some)) {
            for (int i = 0; i < some; ++i) {
                float& value = row[static_cast<std::size_t>(i)];
                if (std::isnan(value)) value = Lightness(luma[x + i] + 0.0f);
            }
        }
        std::copy_n(row.begin(), some, lightness + x);
    }
}

}  // namespace Metric
