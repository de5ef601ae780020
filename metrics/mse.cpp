#include "metrics/mse.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "metric/painting.h"
#include "metrics/plane_mean.h"

namespace Metric {

namespace {

constexpr auto kTerm = [](float first, float second) {
    const float difference = first - second;
    return difference * difference;
};

Bgr Color(float squaredError) {
    return Grey(std::sqrt(squaredError) * 5);
}

}  // namespace

CMSEMetric::CMSEMetric(MetricParameters metricParameters)
    : CDifferenceMetric(std::move(metricParameters), L"mse", L"MSE",
                        L"/video/quality_measure/info_en.html#mse") {}

void CMSEMetric::Visualize(rkVideoImage& target, int component) {
    PaintPixels(target, GetMap(component), paddedWidth, Color);
}

float CMSEMetric::Mean(const float* first, const float* second) const {
    return PlaneMean<float>(first, second, paddedWidth, paddedHeight, kTerm);
}

void CMSEMetric::FillMap(const float* first, const float* second, float* map) const {
    std::transform(first, first + PaddedPixelCount(), second, map, kTerm);
}

}  // namespace Metric
