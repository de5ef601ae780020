#include "metrics/psnr_family.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "kernels/reductions.h"
#include "kernels/sample_difference.h"
#include "metric/painting.h"
#include "metric/plane_tiles.h"

namespace Metric {

namespace {

constexpr float kLargestValue = 100;  // dB; also the value of equal frames
constexpr float kFixedPeak = 256;
constexpr float kFixedPeakL = 100;

/// A brightness that falls by `step` with every whole dB above `from`.
std::uint8_t Shade(float decibels, float from, int step, int darkest = 0) {
    return static_cast<std::uint8_t>(std::max(darkest, 255 - step * static_cast<int>(decibels - from)));
}

Bgr Color(float decibels) {
    if (decibels >= 99) return {};
    if (decibels >= 35) return {Shade(decibels, 25, 6, 40), 0, 0};
    if (decibels >= 20) return {0, Shade(decibels, 20, 15), 0};
    if (decibels >= 17) return {0, Shade(decibels, 17, 5), Shade(decibels, 17, 5)};
    if (decibels >= 0) return {0, 0, Shade(decibels, 0, 3)};
    return {};
}

/// The squared differences of all pixels, from the frames' samples where both have them alike, in blocks of
/// one size that fill the picture. The same value as from float planes, none of which has to be made.
std::optional<double> SumOfSamples(const SamplePlane* a, const SamplePlane* b, int width, int height) {
    if (a == nullptr || b == nullptr || !a->IsPacked() || !b->IsPacked()) return {};
    if (a->sampleBytes != b->sampleBytes || a->scale != b->scale || a->centre != b->centre) return {};
    if (a->shiftX != b->shiftX || a->shiftY != b->shiftY) return {};
    const int columns = width >> a->shiftX;
    const int rows = height >> a->shiftY;
    if (columns << a->shiftX != width || rows << a->shiftY != height) return {};

    constexpr std::uint64_t kGreatestExact = std::uint64_t{1} << 53;
    const std::uint64_t sum = Kernels::SumSquaredDifferences({a->rows, a->rowBytes}, {b->rows, b->rowBytes},
                                                             a->sampleBytes, columns, rows);
    const int blockPixels = 1 << (a->shiftX + a->shiftY);
    if (sum > kGreatestExact / static_cast<std::uint64_t>(blockPixels)) return {};
    return static_cast<double>(sum) * blockPixels * a->scale * a->scale;
}

}  // namespace

CPsnrFamily::CPsnrFamily(MetricParameters metricParameters, const wchar_t* metricId,
                         const wchar_t* metricName, PsnrPeak peakKind, PsnrAverage averageKind)
    : CMetric(std::move(metricParameters)), peak(peakKind), averageOf(averageKind) {
    id = metricId;
    name = metricName;
    unit = L"dB";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#psnr");
}

std::vector<MetricValue> CPsnrFamily::Measure(const std::vector<CMetricImage*>& images) {
    TakePeak(images);
    const double norm = NormOfDifference(images);
    AddFrame(norm * norm / static_cast<double>(PaddedPixelCount()));
    return Result(value);
}

std::vector<MetricValue> CPsnrFamily::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                          rkVideoImage& target) {
    TakePeak(images);
    const auto [first, second] = GetPlanes(images, parameters.component);
    AddFrame(FillMap(first, second) / static_cast<double>(PaddedPixelCount()));
    Visualize(target, parameters.component);
    return Result(value);
}

std::vector<MetricValue> CPsnrFamily::GetAverages(bool visualize) {
    if (averageOf == PsnrAverage::OfValues) return CMetric::GetAverages(visualize);
    average = sum == 0 ? kLargestValue : SequenceDecibels(static_cast<float>(sum / count));
    return Result(average);
}

void CPsnrFamily::Visualize(rkVideoImage& target, int component) {
    PaintPixels(target, GetMap(component), paddedWidth, Color);
}

double CPsnrFamily::Square(float samplePeak) const {
    return static_cast<double>(samplePeak) * samplePeak;
}

float CPsnrFamily::FrameDecibels(double error) const {
    return static_cast<float>(10 * std::log10(peakSquared / error));
}

float CPsnrFamily::SequenceDecibels(float meanError) const {
    return static_cast<float>(10 * std::log10(peakSquared / meanError));
}

void CPsnrFamily::TakePeak(const std::vector<CMetricImage*>& images) {
    if (peak == PsnrPeak::OfImages)
        peakSquared = Square(std::min(images[0]->GetPeak(), images[1]->GetPeak()));
    else
        peakSquared = Square(parameters.component == ComponentL ? kFixedPeakL : kFixedPeak);
}

double CPsnrFamily::NormOfDifference(const std::vector<CMetricImage*>& images) {
    const int component = parameters.component;
    const auto sum = SumOfSamples(images[0]->GetSamples(component), images[1]->GetSamples(component),
                                  paddedWidth, paddedHeight);
    if (sum) return std::sqrt(*sum);

    const PlaneTiles first(*images[0], component);
    const PlaneTiles second(*images[1], component);
    if (first.Plane() != nullptr && second.Plane() != nullptr) {
        const int stride = paddedWidth * static_cast<int>(sizeof(float));
        return Kernels::NormDiffL2(first.Plane(), stride, second.Plane(), stride, paddedWidth, paddedHeight,
                                   Kernels::AccuracyHigh);
    }
    const auto read = [&](int x, int y, int count, float* a, float* b) {
        first.Read(x, y, count, 1, a);
        second.Read(x, y, count, 1, b);
    };
    return Kernels::NormDiffL2AsRead(read, paddedWidth, paddedHeight, Kernels::AccuracyHigh);
}

/// Fills the map of the component; the sum of the squared errors, added in memory order.
double CPsnrFamily::FillMap(const float* first, const float* second) {
    float* map = GetMap(parameters.component);
    double errorSum = 0;
    for (std::size_t i = 0; i < PaddedPixelCount(); ++i) {
        const float difference = first[i] - second[i];
        const double error = difference * difference;
        errorSum += error;
        map[i] = error <= 1 ? kLargestValue : static_cast<float>(10 * std::log10(peakSquared / error));
    }
    return errorSum;
}

void CPsnrFamily::AddFrame(double error) {
    value = error == 0 ? kLargestValue : std::min(kLargestValue, FrameDecibels(error));
    AddFrameValues({averageOf == PsnrAverage::OfErrors ? static_cast<float>(error) : value});
}

}  // namespace Metric
