#include "metrics/ssim_precise.h"

#include <algorithm>
#include <utility>

#include "metrics/painted_map.h"

namespace Metric {

CSSIMMetricIpp::CSSIMMetricIpp(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), 8, 8, true),
      ssim(paddedWidth, paddedHeight, Kernels::BorderReplicate) {
    id = L"ssim_precise";
    name = L"SSIM (precise)";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#ssim");
}

std::vector<MetricValue> CSSIMMetricIpp::Measure(const std::vector<CMetricImage*>& images) {
    value = Mean(images, nullptr);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CSSIMMetricIpp::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                             rkVideoImage& target) {
    value = Mean(images, GetMap(parameters.component));
    AddFrameValues({value});
    Visualize(target, parameters.component);
    return Result(value);
}

void CSSIMMetricIpp::Visualize(rkVideoImage& target, int component) {
    PaintMap(target, GetMap(component), paddedWidth, Kernels::PaintSimilarity);
}

float CSSIMMetricIpp::Mean(const std::vector<CMetricImage*>& images, float* map) {
    const double mean = ssim.Map(GetPlanes(images, parameters.component), paddedWidth, paddedHeight,
                                 ConstantsOf(images), map);
    return std::min(static_cast<float>(mean), 1.0f);
}

}  // namespace Metric
