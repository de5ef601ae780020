#include "metrics/ssim_precise.h"

#include <algorithm>
#include <utility>

#include "kernels/reductions.h"
#include "metrics/similarity_grey.h"

namespace Metric {

CSSIMMetricIpp::CSSIMMetricIpp(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), 8, 8, true),
      ssim(paddedWidth, paddedHeight, Kernels::BorderReplicate) {
    id = L"ssim_precise";
    name = L"SSIM (precise)";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#ssim");
}

std::vector<MetricValue> CSSIMMetricIpp::Measure(const std::vector<CMetricImage*>& images) {
    value = MeanOfMap(images);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CSSIMMetricIpp::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                             rkVideoImage& target) {
    value = MeanOfMap(images);
    AddFrameValues({value});
    Visualize(target, parameters.component);
    return Result(value);
}

void CSSIMMetricIpp::Visualize(rkVideoImage& target, int component) {
    PaintPixels(target, GetMap(component), paddedWidth, SimilarityGrey);
}

float CSSIMMetricIpp::MeanOfMap(const std::vector<CMetricImage*>& images) {
    float* const map = GetMap(parameters.component);
    ssim.Map(GetPlanes(images, parameters.component), paddedWidth, paddedHeight, ConstantsOf(images), map);
    const int stride = paddedWidth * static_cast<int>(sizeof(float));
    const double mean = Kernels::Mean(map, stride, paddedWidth, paddedHeight, Kernels::AccuracyHigh);
    return std::min(static_cast<float>(mean), 1.0f);
}

}  // namespace Metric
