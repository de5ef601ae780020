#include "metrics/msssim_fast.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "kernels/flat_ssim.h"
#include "kernels/halve.h"
#include "kernels/ordered_sum.h"

namespace Metric {

namespace {

constexpr float kWindowPixelsSquared = 4096;
constexpr float k1 = 0.01f;
constexpr float k2 = 0.03f;

constexpr int kBeforeFirst = Kernels::kFlatWindow - 1;  // columns to the left of the first window's value

int StrideOf(const LevelMap& level) {
    return level.width * static_cast<int>(sizeof(float));
}

}  // namespace

CMSSSIMMetric::CMSSSIMMetric(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), Kernels::kFlatWindow, Kernels::kFlatWindow, true),
      scratch(
          static_cast<std::uint8_t*>(Kernels::AllocZeroed(Kernels::GetFlatSSIMScratchSize(paddedWidth)))) {
    id = L"msssim_fast";
    name = L"MSSSIM";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#msssim");

    int width = paddedWidth;
    int height = paddedHeight;
    while (std::min(width, height) >= Kernels::kFlatWindow && levels.size() < kLevelWeights.size()) {
        AddLevel(width, height);
        width /= 2;
        height /= 2;
    }
}

void CMSSSIMMetric::AddLevel(int width, int height) {
    if (!levels.empty())
        halved.push_back({Kernels::MakeFloatPlane(width, height), Kernels::MakeFloatPlane(width, height)});
    LevelMap level = {width, height, Kernels::MakeFloatPlane(width, height)};
    // The bottom rows, which no window writes.
    const std::ptrdiff_t rowFloats = width;
    std::fill(level.values.get() + (height - kBeforeFirst) * rowFloats,
              level.values.get() + height * rowFloats, 1.0f);
    levels.push_back(std::move(level));
}

std::vector<MetricValue> CMSSSIMMetric::Measure(const std::vector<CMetricImage*>& images) {
    value = ProductOfLevels(images);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CMSSSIMMetric::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                            rkVideoImage& target) {
    value = ProductOfLevels(images);
    AddFrameValues({value});
    Visualize(target, parameters.component);
    return Result(value);
}

void CMSSSIMMetric::Visualize(rkVideoImage& target, int) {
    PaintLevels(target, levels);
}

float CMSSSIMMetric::ProductOfLevels(const std::vector<CMetricImage*>& images) {
    const float firstPeak = images[0]->GetPeak();
    const float secondPeak = images[1]->GetPeak();
    const float c1 = k1 * kWindowPixelsSquared * k1 * firstPeak * secondPeak;
    const float c2 = k2 * kWindowPixelsSquared * k2 * firstPeak * secondPeak;

    const auto [first, second] = GetPlanes(images, parameters.component);
    Pictures pictures = {first, second};
    float product = 1;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        if (level > 0) pictures = HalvePictures(pictures, level);
        const double mean = MeanOfLevel(pictures, level, c1, c2);
        const bool last = level + 1 == levels.size();
        product *= static_cast<float>(std::pow(mean, last ? 1.0 : kLevelWeights[level]));
    }
    return product;
}

/// The pictures of `level` from those of the level before.
CMSSSIMMetric::Pictures CMSSSIMMetric::HalvePictures(const Pictures& pictures, std::size_t level) {
    const int fullStride = StrideOf(levels[level - 1]);
    const auto& [width, height, map] = levels[level];
    const auto& [first, second] = halved[level - 1];
    Kernels::Halve(pictures.first, fullStride, first.get(), StrideOf(levels[level]), width, height);
    Kernels::Halve(pictures.second, fullStride, second.get(), StrideOf(levels[level]), width, height);
    return {first.get(), second.get()};
}

double CMSSSIMMetric::MeanOfLevel(const Pictures& pictures, std::size_t level, float c1, float c2) {
    const auto& [width, height, map] = levels[level];
    const int stride = StrideOf(levels[level]);
    const Kernels::SSIMPlanes planes = {pictures.first, stride, pictures.second, stride,
                                        map.get(),      stride, width,           height};
    if (level + 1 == levels.size()) {
        Kernels::FlatSSIM(planes, c1, c2, scratch.get());
    } else {
        Kernels::FlatContrastStructure(planes, c2, scratch.get());
    }

    const int columns = width - kBeforeFirst;
    const int rows = height - kBeforeFirst;
    const double sumOfWindows = Kernels::OrderedSum(0.0, map.get() + kBeforeFirst, stride, columns, rows);
    return sumOfWindows / (static_cast<float>(columns) * static_cast<float>(rows));
}

}  // namespace Metric
