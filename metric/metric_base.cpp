#include "metric/metric_base.h"

#include "platform/product_addresses.h"
#include "platform/text.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <utility>

namespace Metric {

namespace {

int RoundUp(int size, int block) {
    return (size + block - 1) / block * block;
}

/// Copies a plane of `width` by `height` into one of the padded size and continues it to the right and below.
void CopyPadded(const float* plane, int width, int height, float* padded, int paddedWidth, int paddedHeight) {
    float* row = padded;
    for (int y = 0; y < height; ++y, plane += width, row += paddedWidth) {
        std::copy_n(plane, width, row);
        std::fill(row + width, row + paddedWidth, plane[width - 1]);
    }
    for (int y = height; y < paddedHeight; ++y, row += paddedWidth)
        std::copy_n(row - paddedWidth, paddedWidth, row);
}

}  // namespace

CMetric::CMetric(MetricParameters metricParameters) : CMetric(std::move(metricParameters), 1, 1, true) {}

CMetric::CMetric(MetricParameters metricParameters, int metricBlockWidth, int metricBlockHeight, bool padBoth)
    : resultId((*ResultIdCounter())++),
      parameters(std::move(metricParameters)),
      blockWidth(metricBlockWidth),
      blockHeight(metricBlockHeight),
      paddedWidth(RoundUp(parameters.width, blockWidth)),
      paddedHeight(RoundUp(parameters.height, blockHeight)),
      needsPadding(paddedWidth != parameters.width || paddedHeight != parameters.height),
      padSecond(padBoth) {
    // What the first frame will need, so that a lack of memory shows before a run has started.
    GetMap(parameters.component);
    if (!needsPadding) return;
    const auto index = static_cast<std::size_t>(parameters.component);
    paddedFirst[index] = Kernels::MakeFloatPlane(paddedWidth, paddedHeight);
    if (padSecond) paddedSecond[index] = Kernels::MakeFloatPlane(paddedWidth, paddedHeight);
}

std::vector<MetricResultInfo> CMetric::GetResultInfo(bool) {
    return {{resultId, {0, 1}, {}}};
}

std::vector<MetricValue> CMetric::GetAverages(bool) {
    return Result(static_cast<float>(sum / count));
}

void CMetric::AddFrameValues(std::vector<float> values) {
    assert(!values.empty());
    sum += values[0];
    ++count;
}

int* CMetric::ResultIdCounter() {
    static int counter = 0;
    return &counter;
}

std::pair<const float*, const float*> CMetric::GetPlanes(const std::vector<CMetricImage*>& images,
                                                         int component) {
    const auto plane = [&](std::size_t image) -> const float* {
        return image < images.size() ? images[image]->GetPlane(component) : nullptr;
    };
    if (!needsPadding) return {plane(0), plane(1)};

    const auto pad = [&](const float* source, Kernels::FloatPlane& copy) -> const float* {
        if (source == nullptr) return nullptr;
        if (copy == nullptr) copy = Kernels::MakeFloatPlane(paddedWidth, paddedHeight);
        CopyPadded(source, parameters.width, parameters.height, copy.get(), paddedWidth, paddedHeight);
        return copy.get();
    };
    const auto index = static_cast<std::size_t>(component);
    return {pad(plane(0), paddedFirst[index]), padSecond ? pad(plane(1), paddedSecond[index]) : nullptr};
}

float* CMetric::GetMap(int component) {
    auto& map = maps[static_cast<std::size_t>(component)];
    if (map == nullptr) map = Kernels::MakeFloatPlane(paddedWidth, paddedHeight);
    return map.get();
}

std::wstring InfoUrl(const wchar_t* path) {
    return FromUtf8(ProductPage()) + path;
}

}  // namespace Metric
