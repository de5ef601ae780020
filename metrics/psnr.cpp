#include "metrics/psnr.h"

#include <cmath>
#include <utility>

namespace Metric {

CPSNRMetric::CPSNRMetric(MetricParameters metricParameters)
    : CPsnrFamily(std::move(metricParameters), L"psnr", L"PSNR", PsnrPeak::OfImages, PsnrAverage::OfErrors) {}

double CPSNRMetric::Square(float samplePeak) const {
    return samplePeak * samplePeak;
}

float CPSNRMetric::FrameDecibels(double error) const {
    return 10 * static_cast<float>(std::log10(peakSquared / error));
}

float CPSNRMetric::SequenceDecibels(float meanError) const {
    return 10 * std::log10(static_cast<float>(peakSquared) / meanError);
}

}  // namespace Metric
