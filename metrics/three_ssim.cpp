#include "metrics/three_ssim.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "kernels/ordered_sum.h"
#include "kernels/reductions.h"
#include "kernels/sobel.h"
#include "metrics/similarity_grey.h"

namespace Metric {

namespace {

constexpr float kSmoothWeight = 0.15f;
constexpr float kTextureWeight = 0.15f;
constexpr float kEdgeWeight = 0.7f;

// Parts of the greatest gradient.
constexpr double kEdgeGradient = 0.12;
constexpr double kTextureGradient = 0.06;

}  // namespace

C3SSIMMetricIpp::C3SSIMMetricIpp(MetricParameters metricParameters)
    : CMetric(std::move(metricParameters), 8, 8, true),
      ssim(paddedWidth, paddedHeight, Kernels::BorderReplicate),
      gradientFirst(Kernels::MakeFloatPlane(paddedWidth, paddedHeight)),
      gradientSecond(Kernels::MakeFloatPlane(paddedWidth, paddedHeight)),
      segments(static_cast<std::uint8_t*>(Kernels::AllocZeroed(PaddedPixelCount()))),
      sobelScratch(static_cast<std::uint8_t*>(
          Kernels::AllocZeroed(Kernels::GetSobelScratchSize(paddedWidth, paddedHeight)))),
      split(Kernels::MakeFloatPlane(paddedWidth, kSegmentCount)) {
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
    static_assert(Smooth == 0 && Texture == 1 && Edge == 2);  // the bytes of blue, green and red
    const float* similarity = GetMap(component);
    const std::uint8_t* segment = segments.get();
    for (int y = 0; y < target.VisibleHeight(); ++y, similarity += paddedWidth, segment += paddedWidth) {
        std::uint8_t* pixel = target.Data() + std::ptrdiff_t{y} * target.Stride();
        for (int x = 0; x < target.VisibleWidth(); ++x, pixel += 3) {
            std::fill_n(pixel, 3, std::uint8_t{0});
            pixel[segment[x]] = SimilarityGrey(similarity[x]).b;
        }
    }
}

void C3SSIMMetricIpp::FillGradient(const float* picture, float* gradient) {
    constexpr float kBlack = 0;
    const int stride = paddedWidth * static_cast<int>(sizeof(float));
    Kernels::FilterSobelMagnitudeBorder(picture, stride, gradient, stride, paddedWidth, paddedHeight,
                                        Kernels::BorderConstant, kBlack, sobelScratch.get());
}

float C3SSIMMetricIpp::WeighSegments(const std::vector<CMetricImage*>& images) {
    const auto pictures = GetPlanes(images, parameters.component);
    FillGradient(pictures.first, gradientFirst.get());
    FillGradient(pictures.second, gradientSecond.get());
    float* const map = GetMap(parameters.component);
    ssim.Map(pictures, paddedWidth, paddedHeight, ConstantsOf(images), map);

    const auto means = MeansOfSegments(map);
    return means[Edge] * kEdgeWeight + means[Smooth] * kSmoothWeight + means[Texture] * kTextureWeight;
}

SegmentThresholds C3SSIMMetricIpp::Thresholds() const {
    const auto greatest = [this](const Kernels::FloatPlane& plane) {
        const int stride = paddedWidth * static_cast<int>(sizeof(float));
        return Kernels::Max(plane.get(), stride, paddedWidth, paddedHeight);
    };
    const double most = std::max(greatest(gradientFirst), greatest(gradientSecond));
    return {static_cast<float>(most * kEdgeGradient), static_cast<float>(most * kTextureGradient)};
}

std::array<float, kSegmentCount> C3SSIMMetricIpp::MeansOfSegments(const float* map) {
    const SegmentThresholds thresholds = Thresholds();
    std::array<float, kSegmentCount> sums = {};
    std::array<int, kSegmentCount> counts = {};
    for (int y = 0; y < paddedHeight; ++y) {
        const std::ptrdiff_t offset = std::ptrdiff_t{y} * paddedWidth;
        SplitRow row = {segments.get() + offset, {}};
        for (std::size_t i = 0; i < kSegmentCount; ++i)
            row.values[i] = split.get() + static_cast<std::ptrdiff_t>(i) * paddedWidth;
        const auto rowCounts = Split(gradientFirst.get() + offset, gradientSecond.get() + offset,
                                     map + offset, paddedWidth, thresholds, row);
        for (std::size_t i = 0; i < kSegmentCount; ++i) {
            // The zeros of the other segments change no bit of a sum that starts at +0.
            sums[i] = Kernels::OrderedSum(sums[i], row.values[i], 0, paddedWidth, 1);
            counts[i] += rowCounts[i];
        }
    }
    std::array<float, kSegmentCount> means;
    for (std::size_t i = 0; i < kSegmentCount; ++i)
        means[i] = counts[i] == 0 ? 1 : sums[i] / static_cast<float>(counts[i]);
    return means;
}

}  // namespace Metric
