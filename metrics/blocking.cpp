#include "metrics/blocking.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "metrics/painted_map.h"

namespace Metric {

namespace {
constexpr int kBlock = 8;
}

CBlockingMetric::CBlockingMetric(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), kBlock, kBlock, false),
      line(std::max(paddedWidth, paddedHeight)),
      strengths(static_cast<std::size_t>(std::max(paddedWidth, paddedHeight))) {
    inputCount = {1, 1};
    id = L"blocking_metric";
    name = L"Lumetry Blocking (MPEG-4) BETA";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#blockingmeasure");
    higherIsBetter = false;
}

std::vector<MetricValue> CBlockingMetric::Measure(const std::vector<CMetricImage*>& images) {
    MeasureFrame(GetPlanes(images, parameters.component).first, nullptr);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CBlockingMetric::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                              rkVideoImage& target) {
    MeasureFrame(GetPlanes(images, parameters.component).first, GetMap(parameters.component));
    Visualize(target, parameters.component);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricResultInfo> CBlockingMetric::GetResultInfo(bool) {
    return {{resultId, {0}, {}}};
}

void CBlockingMetric::Visualize(rkVideoImage& target, int component) {
    PaintMap(target, GetMap(component), paddedWidth, Kernels::PaintGrey);
}

void CBlockingMetric::MeasureFrame(const float* plane, float* map) {
    strengthSum = 0;
    strengthCount = 0;
    float previous = 0;
    const std::ptrdiff_t stride = paddedWidth;
    const std::ptrdiff_t bottomRow = stride * (paddedHeight - 1);
    for (int x = kBlock - 1; x < paddedWidth - (kBlock - 1); x += kBlock) {
        line.TakeVertical(plane + bottomRow, paddedWidth, paddedHeight, x);
        MeasureLine();
        if (map != nullptr) Paint(map + bottomRow + x, -stride, 1, previous);
    }
    for (int y = kBlock - 1; y < paddedHeight - (kBlock - 1); y += kBlock) {
        line.TakeHorizontal(plane + bottomRow, paddedWidth, y);
        MeasureLine();
        if (map != nullptr) Paint(map + bottomRow - stride * y, 1, stride, previous);
    }
    value = strengthCount == 0 ? 0.0f : strengthSum / static_cast<float>(strengthCount);
}

void CBlockingMetric::MeasureLine() {
    MeasureStrengths(line, edgeLimit, strengths.data());
    float total = strengthSum;
    int positive = 0;
    for (int place = 0; place < line.Length(); ++place) {
        const float strength = strengths[static_cast<std::size_t>(place)];
        total += std::max(strength, 0.0f);
        positive += strength > 0;
    }
    strengthSum = total;
    strengthCount += positive;
}

void CBlockingMetric::Paint(float* cell, std::ptrdiff_t along, std::ptrdiff_t across, float& previous) const {
    const auto limit = static_cast<float>(stepLimit);
    for (int place = 0; place < line.Length(); ++place, cell += along) {
        float strength = strengths[static_cast<std::size_t>(place)];
        const bool startsAfresh = place % kBlock == 0 && strength != 0;
        if (!startsAfresh) strength = std::clamp(strength, previous - limit, previous + limit);
        previous = strength;
        cell[0] = cell[across] = std::min(strength, 255.0f);
    }
}

}  // namespace Metric
