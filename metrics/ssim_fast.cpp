#include "metrics/ssim_fast.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
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
      scratch(static_cast<std::uint8_t*>(Kernels::AllocZeroed(Kernels::GetFlatSSIMScratchSize(paddedWidth)))),
      byteWindows(paddedWidth, paddedHeight) {
    id = L"ssim_fast";
    name = L"SSIM (fast)";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#ssim");
    float* const map = GetMap(parameters.component);
    const std::size_t rowsWithout =
        static_cast<std::size_t>(kBeforeFirst) * static_cast<std::size_t>(paddedWidth);
    std::fill_n(map + PaddedPixelCount() - rowsWithout, rowsWithout, 1.0f);  // never written again
}

std::vector<MetricValue> CSSIMMetric::Measure(const std::vector<CMetricImage*>& images) {
    value = SumOfWindows<float>(images, false) / WindowCount();
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CSSIMMetric::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                          rkVideoImage& target) {
    value = static_cast<float>(SumOfWindows<double>(images, true) / WindowCount());
    AddFrameValues({value});
    Visualize(target, parameters.component);
    return Result(value);
}

void CSSIMMetric::Visualize(rkVideoImage& target, int component) {
    PaintMap(target, GetMap(component), paddedWidth, Kernels::PaintSimilarity);
}

template <class Number>
Number CSSIMMetric::SumOfWindows(const std::vector<CMetricImage*>& images, bool wantsMap) {
    const double peaks = images[0]->GetPeak() * images[1]->GetPeak();
    const auto c1 = static_cast<float>(peaks * kLuminanceScale);
    const auto c2 = static_cast<float>(peaks * kContrastScale);
    float* const map = GetMap(parameters.component);
    if (const auto bytes = needsPadding ? std::nullopt : BytePicturesOf(images, parameters.component)) {
        return byteWindows.Sum<Number>(*bytes, map, wantsMap, [=](Kernels::FlatWalk& walk, float* values) {
            walk.NextSSIM(c1, c2, values);
        });
    }

    const auto [first, second] = GetPlanes(images, parameters.component);
    const int stride = paddedWidth * static_cast<int>(sizeof(float));
    Kernels::FlatSSIM({first, stride, second, stride, map, stride, paddedWidth, paddedHeight}, c1, c2,
                      scratch.get());
    return Kernels::OrderedSum(Number{0}, map + kBeforeFirst, stride, paddedWidth - kBeforeFirst,
                               paddedHeight - kBeforeFirst);
}

float CSSIMMetric::WindowCount() const {
    return static_cast<float>(paddedWidth - kBeforeFirst) * static_cast<float>(paddedHeight - kBeforeFirst);
}

}  // namespace Metric
