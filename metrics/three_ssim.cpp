#include "metrics/three_ssim.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <utility>

#include "kernels/bands.h"
#include "kernels/ordered_class_sums.h"
#include "kernels/sobel_squares.h"
#include "metric/painting.h"

namespace Metric {

namespace {

constexpr float kSmoothWeight = 0.15f;
constexpr float kTextureWeight = 0.15f;
constexpr float kEdgeWeight = 0.7f;

}  // namespace

C3SSIMMetricIpp::C3SSIMMetricIpp(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), 8, 8, true),
      ssim(paddedWidth, paddedHeight, Kernels::BorderReplicate),
      segments(static_cast<std::uint8_t*>(Kernels::AllocZeroed(PaddedPixelCount()))) {
    id = L"3ssim";
    name = L"3SSIM";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#3ssim");
}

std::vector<MetricValue> C3SSIMMetricIpp::Measure(const std::vector<CMetricImage*>& images) {
    value = WeighSegments(images);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> C3SSIMMetricIpp::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                              rkVideoImage& target) {
    value = WeighSegments(images);
    AddFrameValues({value});
    Visualize(target, parameters.component);
    return Result(value);
}

void C3SSIMMetricIpp::Visualize(rkVideoImage& target, int component) {
    const float* const map = GetMap(component);
    Kernels::ForEachRow(target.VisibleWidth(), target.VisibleHeight(), [&](int y) {
        const std::ptrdiff_t offset = std::ptrdiff_t{y} * paddedWidth;
        PaintSegments(map + offset, segments.get() + offset, target.VisibleWidth(),
                      target.Data() + std::ptrdiff_t{y} * target.Stride());
    });
}

float C3SSIMMetricIpp::WeighSegments(const std::vector<CMetricImage*>& images) {
    const auto pictures = GetPlanes(images, parameters.component);
    float* const map = GetMap(parameters.component);
    ssim.Map(pictures, paddedWidth, paddedHeight, ConstantsOf(images), map);
    const auto counts = SplitPicture(pictures);

    const int stride = paddedWidth * static_cast<int>(sizeof(float));
    Kernels::ClassSums sums = {};
    Kernels::AddInOrder(sums, map, stride, segments.get(), paddedWidth, paddedWidth, paddedHeight);
    const auto mean = [&](Segment segment) {
        return counts[segment] == 0 ? 1 : sums[segment] / static_cast<float>(counts[segment]);
    };
    return mean(Edge) * kEdgeWeight + mean(Smooth) * kSmoothWeight + mean(Texture) * kTextureWeight;
}

// Two passes, since the thresholds are parts of the greatest gradient of all. To make the gradients once more
// costs less than to write them down and read them again.
std::array<int, kSegmentCount> C3SSIMMetricIpp::SplitPicture(
    const std::pair<const float*, const float*>& pair) {
    const Kernels::SobelPlanes<2> pictures = {
        {pair.first, pair.second}, paddedWidth * static_cast<int>(sizeof(float)), paddedWidth, paddedHeight};
    const SegmentThresholds thresholds = ThresholdsOf(Kernels::GreatestSobelSquare(pictures));
    std::array<int, kSegmentCount> counts = {};
    std::mutex counting;
    Kernels::ForEachBand(paddedWidth, paddedHeight, [&](const Kernels::Band& band) {
        const auto ofBand = FindSegments(pictures, band, thresholds, segments.get());
        const std::lock_guard lock(counting);
        for (std::size_t i = 0; i < kSegmentCount; ++i) counts[i] += ofBand[i];
    });
    return counts;
}

}  // namespace Metric
