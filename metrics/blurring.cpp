#include "metrics/blurring.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "metric/painting.h"

namespace Metric {

namespace {

/// g at an inner pixel of a plane with rows of `width` floats.
float Gradient(const float* pixel, std::ptrdiff_t width) {
    return std::fabs(pixel[-1] - pixel[1]) + std::fabs(pixel[-width] - pixel[width]);
}

}  // namespace

CBlurringMetric::CBlurringMetric(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), 1, 1, false), secondResultId((*ResultIdCounter())++) {
    inputCount = {1, 2};
    id = L"blurring_metric";
    name = L"Lumetry Blurring BETA";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#ybluringmeasure");
}

std::vector<MetricValue> CBlurringMetric::Measure(const std::vector<CMetricImage*>& images) {
    value = Sharpness(GetPlanes(images, parameters.component).first);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CBlurringMetric::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                              rkVideoImage& target) {
    const auto [first, second] = GetPlanes(images, parameters.component);
    value = Sharpness(first);
    const float secondValue = Sharpness(second);
    FillMap(first, second, GetMap(parameters.component));
    AddFrameValues({value, secondValue});
    Visualize(target, parameters.component);
    return {{resultId, value}, {secondResultId, secondValue}};
}

std::vector<MetricResultInfo> CBlurringMetric::GetResultInfo(bool visualize) {
    if (!visualize) return {{resultId, {0}, {}}};
    return {{resultId, {0}, {}}, {secondResultId, {1}, {}}};
}

std::vector<MetricValue> CBlurringMetric::GetAverages(bool visualize) {
    std::vector<MetricValue> averages = CMetric::GetAverages(visualize);
    if (visualize) averages.push_back({secondResultId, static_cast<float>(secondSum / count)});
    return averages;
}

void CBlurringMetric::AddFrameValues(std::vector<float> values) {
    if (values.size() > 1) secondSum += values[1];
    CMetric::AddFrameValues(std::move(values));
}

void CBlurringMetric::Visualize(rkVideoImage& target, int component) {
    PaintPixels(target, GetMap(component), paddedWidth, RedGreen);
}

float CBlurringMetric::Sharpness(const float* plane) const {
    if (paddedWidth < 3 || paddedHeight < 3) return 0;  // no inner pixel, nothing that rises or falls
    const std::ptrdiff_t width = paddedWidth;
    float gradientSum = 0;
    for (int y = 1; y < paddedHeight - 1; ++y) {
        const float* row = plane + y * width;
        for (std::ptrdiff_t x = 1; x < width - 1; ++x) gradientSum += Gradient(row + x, width);
    }
    return gradientSum / static_cast<float>(std::int64_t{paddedWidth - 2} * (paddedHeight - 2));
}

void CBlurringMetric::FillMap(const float* first, const float* second, float* map) const {
    const std::ptrdiff_t width = paddedWidth;
    for (int y = 1; y < paddedHeight - 1; ++y) {
        for (std::ptrdiff_t i = y * width + 1; i < (y + 1) * width - 1; ++i) {
            map[i] = Gradient(first + i, width) - Gradient(second + i, width);
        }
    }
}

}  // namespace Metric
