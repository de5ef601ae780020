#include "metrics/stssim.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "kernels/smallest.h"
#include "kernels/space_time_ssim.h"
#include "metrics/painted_map.h"

namespace Metric {

namespace {
constexpr int kLeadingFrames = Kernels::kWindowFrames - 1;  // that have no value
constexpr double kPooledShare = 0.06;

int RowsHolding(int values, int rowLength) {
    return rowLength > 0 ? (values + rowLength - 1) / rowLength : 0;
}
}  // namespace

CSTSSIMMetric::CSTSSIMMetric(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), 8, 8, true),
      poolRows(static_cast<int>(paddedHeight * kPooledShare)),
      first(paddedWidth, paddedHeight),
      second(paddedWidth, paddedHeight),
      lines(paddedWidth, paddedHeight),
      ssim(paddedWidth, paddedHeight, Kernels::BorderReplicate),
      temporalMap(Kernels::MakeFloatPlane(lines.AlignedWidth(), paddedHeight)),
      temporalRows(RowsHolding(paddedWidth * paddedHeight, lines.AlignedWidth())),
      temporalScratch(static_cast<std::uint8_t*>(
          Kernels::AllocZeroed(Kernels::GetSpaceTimeScratchSize(lines.AlignedWidth(), temporalRows)))),
      poolScratch(Kernels::MakeFloatPlane(paddedWidth, paddedHeight)) {
    id = L"stssim";
    name = L"stSSIM";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#stssim");
}

std::vector<MetricValue> CSTSSIMMetric::Measure(const std::vector<CMetricImage*>& images) {
    TakeFrame(images);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CSTSSIMMetric::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                            rkVideoImage& target) {
    TakeFrame(images);
    AddFrameValues({value});
    if (filledFrames == Kernels::kWindowFrames) {
        float* const map = GetMap(parameters.component);
        for (std::size_t i = 0; i < PaddedPixelCount(); ++i) map[i] = 255 - temporalMap[i] * 255 * map[i];
        Visualize(target, parameters.component);
    }
    return Result(value);
}

std::vector<MetricValue> CSTSSIMMetric::GetAverages(bool) {
    average = count <= kLeadingFrames ? 0 : static_cast<float>(sum / (count - kLeadingFrames));
    return Result(average);
}

void CSTSSIMMetric::Visualize(rkVideoImage& target, int component) {
    PaintMap(target, GetMap(component), paddedWidth, Kernels::PaintGrey);
}

void CSTSSIMMetric::TakeFrame(const std::vector<CMetricImage*>& images) {
    const std::pair<const float*, const float*> planes = GetPlanes(images, parameters.component);
    first.Push(planes.first);
    second.Push(planes.second);
    lines.Push(first.MiddleFrame());
    filledFrames = std::min(filledFrames + 1, Kernels::kWindowFrames);
    value = 0;
    if (filledFrames == Kernels::kWindowFrames) CompareWindow(ConstantsOf(images));
}

void CSTSSIMMetric::CompareWindow(const SSIMConstants& constants) {
    Kernels::SpaceTimeSSIM(
        {first.Layout(), first.Tiles(), second.Tiles(), first.OldestSlot()}, constants.c1, constants.c2,
        {temporalMap.get(), lines.AlignedWidth(), temporalRows, lines.Find()}, temporalScratch.get());
    float* const spatialMap = GetMap(parameters.component);
    ssim.Map({first.MiddleFrame(), second.MiddleFrame()}, paddedWidth, paddedHeight, constants, spatialMap);
    value = static_cast<float>(PooledScore(spatialMap) * PooledScore(temporalMap.get()));
}

double CSTSSIMMetric::PooledScore(const float* values) {
    if (poolRows == 0) return 1;
    const int pooled = paddedWidth * poolRows;
    const int pixels = static_cast<int>(PaddedPixelCount());
    return std::min(Kernels::MeanOfSmallest(values, pixels, pooled, poolScratch.get()), 1.0);
}

}  // namespace Metric
