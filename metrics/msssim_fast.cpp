#include "metrics/msssim_fast.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "kernels/bands.h"
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

float WindowCount(const LevelMap& level) {
    return static_cast<float>(level.width - kBeforeFirst) * static_cast<float>(level.height - kBeforeFirst);
}

}  // namespace

CMSSSIMMetric::CMSSSIMMetric(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), Kernels::kFlatWindow, Kernels::kFlatWindow, true),
      scratch(static_cast<std::uint8_t*>(Kernels::AllocZeroed(Kernels::GetFlatSSIMScratchSize(paddedWidth)))),
      scratchOfCoarser(
          static_cast<std::uint8_t*>(Kernels::AllocZeroed(Kernels::GetFlatSSIMScratchSize(paddedWidth / 2)))),
      byteWindows(paddedWidth, paddedHeight) {
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
    value = ProductOfLevels(images, false);
    AddFrameValues({value});
    return Result(value);
}

std::vector<MetricValue> CMSSSIMMetric::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                            rkVideoImage& target) {
    value = ProductOfLevels(images, true);
    AddFrameValues({value});
    Visualize(target, parameters.component);
    return Result(value);
}

void CMSSSIMMetric::Visualize(rkVideoImage& target, int) {
    PaintLevels(target, levels);
}

float CMSSSIMMetric::ProductOfLevels(const std::vector<CMetricImage*>& images, bool wantsMaps) {
    const float firstPeak = images[0]->GetPeak();
    const float secondPeak = images[1]->GetPeak();
    const Constants constants = {k1 * kWindowPixelsSquared * k1 * firstPeak * secondPeak,
                                 k2 * kWindowPixelsSquared * k2 * firstPeak * secondPeak};

    // The first level takes most of the time, and the others don't need it.
    std::array<double, kLevelWeights.size()> means = {};
    const auto meanCoarser = [&] {
        for (std::size_t level = 1; level < levels.size(); ++level) {
            if (level > 1) HalveLevel(level - 1);
            means[level] = MeanOfLevel(PicturesOf(level), level, constants, scratchOfCoarser.get());
        }
    };
    // A single level is the whole SSIM, which `MeanOfLevel` alone knows.
    const bool takesBytes = !needsPadding && levels.size() > 1;
    if (const auto bytes = takesBytes ? BytePicturesOf(images, parameters.component) : std::nullopt) {
        const auto meanFirst = [&] { means[0] = MeanOfBytes(*bytes, constants.c2, wantsMaps); };
        Kernels::RunBoth(meanFirst, [&] {
            HalveFrame(*bytes);
            meanCoarser();
        });
    } else {
        const auto [first, second] = GetPlanes(images, parameters.component);
        const Pictures frame = {first, second};
        const auto meanFirst = [&] { means[0] = MeanOfLevel(frame, 0, constants, scratch.get()); };
        Kernels::RunBoth(meanFirst, [&] {
            if (levels.size() > 1) HalveFrame(frame);
            meanCoarser();
        });
    }

    float product = 1;
    for (std::size_t level = 0; level < levels.size(); ++level) {
        const bool last = level + 1 == levels.size();
        product *= static_cast<float>(std::pow(means[level], last ? 1.0 : kLevelWeights[level]));
    }
    return product;
}

CMSSSIMMetric::Pictures CMSSSIMMetric::PicturesOf(std::size_t level) const {
    const auto& [first, second] = halved[level - 1];
    return {first.get(), second.get()};
}

void CMSSSIMMetric::HalveFrame(const Pictures& frame) {
    const int stride = StrideOf(levels[0]);
    const auto& [width, height, map] = levels[1];
    Kernels::Halve(frame.first, stride, halved[0][0].get(), StrideOf(levels[1]), width, height);
    Kernels::Halve(frame.second, stride, halved[0][1].get(), StrideOf(levels[1]), width, height);
}

void CMSSSIMMetric::HalveFrame(const Kernels::BytePictures& frame) {
    const auto& [width, height, map] = levels[1];
    Kernels::HalveBytes(frame.first, frame.firstStride, halved[0][0].get(), StrideOf(levels[1]), width,
                        height);
    Kernels::HalveBytes(frame.second, frame.secondStride, halved[0][1].get(), StrideOf(levels[1]), width,
                        height);
}

void CMSSSIMMetric::HalveLevel(std::size_t level) {
    const Pictures pictures = PicturesOf(level);
    const int stride = StrideOf(levels[level]);
    const auto& [width, height, map] = levels[level + 1];
    const auto& [first, second] = halved[level];
    Kernels::Halve(pictures.first, stride, first.get(), StrideOf(levels[level + 1]), width, height);
    Kernels::Halve(pictures.second, stride, second.get(), StrideOf(levels[level + 1]), width, height);
}

double CMSSSIMMetric::MeanOfLevel(const Pictures& pictures, std::size_t level, const Constants& constants,
                                  void* levelScratch) {
    const auto& [width, height, map] = levels[level];
    const int stride = StrideOf(levels[level]);
    const Kernels::SSIMPlanes planes = {pictures.first, stride, pictures.second, stride,
                                        map.get(),      stride, width,           height};
    if (level + 1 == levels.size()) {
        Kernels::FlatSSIM(planes, constants.c1, constants.c2, levelScratch);
    } else {
        Kernels::FlatContrastStructure(planes, constants.c2, levelScratch);
    }
    return Kernels::OrderedSum(0.0, map.get() + kBeforeFirst, stride, width - kBeforeFirst,
                               height - kBeforeFirst) /
           WindowCount(levels[level]);
}

double CMSSSIMMetric::MeanOfBytes(const Kernels::BytePictures& frame, float c2, bool wantsMap) {
    const auto nextRow = [=](Kernels::FlatWalk& walk, float* values) {
        walk.NextContrastStructure(c2, values);
    };
    return byteWindows.Sum<double>(frame, levels[0].values.get(), wantsMap, nextRow) / WindowCount(levels[0]);
}

}  // namespace Metric
