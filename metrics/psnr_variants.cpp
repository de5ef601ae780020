#include "metrics/psnr_variants.h"

#include <utility>

namespace Metric {

CPsnr256Metric::CPsnr256Metric(MetricParameters metricParameters)
    : CPsnrFamily(std::move(metricParameters), L"psnr_256", L"PSNR (256)", PsnrPeak::Fixed,
                  PsnrAverage::OfErrors) {}

CApsnrMetric::CApsnrMetric(MetricParameters metricParameters)
    : CPsnrFamily(std::move(metricParameters), L"apsnr", L"APSNR", PsnrPeak::OfImages,
                  PsnrAverage::OfValues) {}

CApsnr256Metric::CApsnr256Metric(MetricParameters metricParameters)
    : CPsnrFamily(std::move(metricParameters), L"apsnr_256", L"APSNR (256)", PsnrPeak::Fixed,
                  PsnrAverage::OfValues) {}

}  // namespace Metric
