#include "metrics/msssim_precise.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "kernels/reductions.h"

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
    value = ProductOfLevels(images);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CMSSSIMMetricIpp::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                               rkVideoImage& target) {
    value = ProductOfLevels(images);
    AddFrameValues({value});
    Visualize(target, parameters.component);
    return Result(value);
}

void CMSSSIMMetricIpp::Visualize(rkVideoImage& target, int) {
    PaintLevels(target, levels);
}

float CMSSSIMMetricIpp::ProductOfLevels(const std::vector<CMetricImage*>& images) {
    const SSIMConstants constants = ConstantsOf(images);
    auto pictures = GetPlanes(images, parameters.component);
    double product = 1;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        if (level > 0) pictures = halved.Halve(pictures, level);
        const double mean = MeanOfLevel(pictures, level, constants);
        product *= IsLast(level) ? mean : std::pow(mean, kLevelWeights[level]);
    }
    const auto rounded = static_cast<float>(product);
    return rounded > 1 ? 1 : rounded;  // a NaN stays one
}

double CMSSSIMMetricIpp::MeanOfLevel(const GaussWindowSSIM::Pictures& pictures, std::size_t level,
                                     const SSIMConstants& constants) {
    const auto& [width, height, map] = levels[level];
    if (IsLast(level)) {
        ssim.Map(pictures, width, height, constants, map.get());
    } else {
        ssim.ContrastStructureMap(pictures, width, height, constants, map.get());
    }
    const int stride = width * static_cast<int>(sizeof(float));
    return Kernels::Mean(map.get(), stride, width, height, Kernels::AccuracyHigh);
}

}  // namespace Metric
