#include "metrics/delta.h"

#include <algorithm>
#include <utility>

#include "metric/painting.h"
#include "metrics/plane_mean.h"

namespace Metric {

namespace {
constexpr auto kTerm = [](float first, float second) { return first - second; };
}

CDeltaMetric::CDeltaMetric(MetricParameters metricParameters)
    : CDifferenceMetric(std::move(metricParameters), L"delta", L"Delta",
                        L"/video/quality_measure/info_en.html#delta") {}

void CDeltaMetric::Visualize(rkVideoImage& target, int component) {
    PaintPixels(target, GetMap(component), paddedWidth, RedGreen);
}

float CDeltaMetric::Mean(const float* first, const float* second) const {
    return PlaneMean<float>(first, second, paddedWidth, paddedHeight, kTerm);
}

void CDeltaMetric::FillMap(const float* first, const float* second, float* map) const {
    std::transform(first, first + PaddedPixelCount(), second, map, kTerm);
}

}  // namespace Metric
