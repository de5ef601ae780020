#include "metrics/ssim_fast.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "kernels/flat_ssim.h"
#include "kernels/ordered_sum.h"
#include "metrics/painted_map.h"

namespace Metric {

namespace {

// (0.01)^2 and (0.03)^2 for sums over 64 pixels in place of means.
constexpr double kLuminanceScale = 0.4096;
constexpr double kContrastScale = 3.6864;

constexpr int kBeforeFirst = Kernels::kFlatWindow - 1;  // columns to the left of the first window's value

}  // namespace

CSSIMMetric::CSSIMMetric(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), Kernels::kFlatWindow, Kernels::kFlatWindow, true),
      scratch(
          static_cast<std::uint8_t*>(Kernels::AllocZeroed(Kernels::GetFlatSSIMScratchSize(paddedWidth)))) {
    id = L"ssim_fast";
    name = L"SSIM (fast)";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#ssim");
    float* const map = GetMap(parameters.component);
    const std::size_t rowsWithout =
        static_cast<std::size_t>(kBeforeFirst) * static_cast<std::size_t>(paddedWidth);
    std::fill_n(map + PaddedPixelCount() - rowsWithout, rowsWithout, 1.0f);  // never written again
}

std::vector<MetricValue> CSSIMMetric::Measure(const std::vector<CMetricImage*>& images) {
    FillMap(images);
    value = SumOfWindows<float>() / WindowCount();
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CSSIMMetric::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                          rkVideoImage& target) {
    FillMap(images);
    value = static_cast<float>(SumOfWindows<double>() / WindowCount());
    AddFrameValues({value});
    Visualize(target, parameters.component);
    return Result(value);
}

void CSSIMMetric::Visualize(rkVideoImage& target, int component) {
    PaintMap(target, GetMap(component), paddedWidth, Kernels::PaintSimilarity);
}

void CSSIMMetric::FillMap(const std::vector<CMetricImage*>& images) {
    const auto [first, second] = GetPlanes(images, parameters.component);
    const double peaks = images[0]->GetPeak() * images[1]->GetPeak();
    const int stride = paddedWidth * static_cast<int>(sizeof(float));
    Kernels::FlatSSIM(
        {first, stride, second, stride, GetMap(parameters.component), stride, paddedWidth, paddedHeight},
        static_cast<float>(peaks * kLuminanceScale), static_cast<float>(peaks * kContrastScale),
        scratch.get());
}

template <class Number>
Number CSSIMMetric::SumOfWindows() {
    const int stride = paddedWidth * static_cast<int>(sizeof(float));
    return Kernels::OrderedSum(Number{0}, GetMap(parameters.component) + kBeforeFirst, stride,
                               paddedWidth - kBeforeFirst, paddedHeight - kBeforeFirst);
}

float CSSIMMetric::WindowCount() const {
    return static_cast<float>(paddedWidth - kBeforeFirst) * static_cast<float>(paddedHeight - kBeforeFirst);
}

}  // namespace Metric
