#include "metrics/msad.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "metric/painting.h"
#include "metrics/plane_mean.h"

namespace Metric {

namespace {

constexpr auto kTerm = [](float first, float second) { return std::abs(first - second); };

Bgr Color(float difference) {
    return Grey(std::min(255.0f, difference * 10));
}

}  // namespace

CMSADMetric::CMSADMetric(MetricParameters metricParameters)
    : CDifferenceMetric(std::move(metricParameters), L"msad", L"MSAD",
                        L"/video/quality_measure/info_en.html#msad") {}

void CMSADMetric::Visualize(rkVideoImage& target, int component) {
    PaintPixels(target, GetMap(component), paddedWidth, Color);
}

float CMSADMetric::Mean(const float* first, const float* second) const {
    return PlaneMean<double>(first, second, paddedWidth, paddedHeight, kTerm);
}

void CMSADMetric::FillMap(const float* first, const float* second, float* map) const {
    std::transform(first, first + PaddedPixelCount(), second, map, kTerm);
}

}  // namespace Metric
