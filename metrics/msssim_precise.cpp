#include "metrics/msssim_precise.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Metric {

CMSSSIMMetricIpp::CMSSSIMMetricIpp(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), 8, 8, true),
      levels(MakeLevels(paddedWidth, paddedHeight, 1)),
      halved(levels),
      ssim(paddedWidth, paddedHeight, Kernels::BorderConstant) {
    id = L"msssim_precise";
    name = L"MSSSIM (precise)";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#ssim");
}

std::vector<MetricValue> CMSSSIMMetricIpp::Measure(const std::vector<CMetricImage*>& images) {
    value = ProductOfLevels(images, false);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CMSSSIMMetricIpp::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                               rkVideoImage& target) {
    value = ProductOfLevels(images, true);
    AddFrameValues({value});
    Visualize(target, parameters.component);
    return Result(value);
}

void CMSSSIMMetricIpp::Visualize(rkVideoImage& target, int) {
    PaintLevels(target, levels);
}

float CMSSSIMMetricIpp::ProductOfLevels(const std::vector<CMetricImage*>& images, bool wantsMaps) {
    const SSIMConstants constants = ConstantsOf(images);
    auto pictures = GetPlanes(images, parameters.component);
    double product = 1;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        if (level > 0) pictures = halved.Halve(pictures, level);
        const double mean = MeanOfLevel(pictures, level, constants, wantsMaps);
        product *= IsLast(level) ? mean : std::pow(mean, kLevelWeights[level]);
    }
    const auto rounded = static_cast<float>(product);
    return rounded > 1 ? 1 : rounded;  // a NaN stays one
}

double CMSSSIMMetricIpp::MeanOfLevel(const GaussWindowSSIM::Pictures& pictures, std::size_t level,
                                     const SSIMConstants& constants, bool wantsMap) {
    const auto& [width, height, map] = levels[level];
    float* const values = wantsMap ? map.get() : nullptr;
    if (IsLast(level)) return ssim.Map(pictures, width, height, constants, values);
    return ssim.ContrastStructureMap(pictures, width, height, constants, values);
}

}  // namespace Metric
