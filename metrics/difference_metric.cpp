#include "metrics/difference_metric.h"

#include <utility>

namespace Metric {

CDifferenceMetric::CDifferenceMetric(MetricParameters metricParameters, const wchar_t* metricId,
                                     const wchar_t* metricName, const wchar_t* infoPath)
    : CMetric(std::move(metricParameters)) {
    id = metricId;
    name = metricName;
    infoUrl = InfoUrl(infoPath);
    higherIsBetter = false;
}

std::vector<MetricValue> CDifferenceMetric::Measure(const std::vector<CMetricImage*>& images) {
    const auto [first, second] = GetPlanes(images, parameters.component);
    value = Mean(first, second);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CDifferenceMetric::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                                rkVideoImage& target) {
    const auto [first, second] = GetPlanes(images, parameters.component);
    FillMap(first, second, GetMap(parameters.component));
    value = Mean(first, second);
    AddFrameValues({value});
    Visualize(target, parameters.component);
    return Result(value);
}

}  // namespace Metric
