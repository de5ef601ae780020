#pragma once

#include "metrics/psnr_family.h"

namespace Metric {

// Three readings of the same formula that are in use beside "PSNR"; precision, map and picture are those of
// `CPsnrFamily`. Frame value 10 log10(peak^2 / MSE), at most 100 dB and 100 for equal frames.

/// "PSNR (256)": the peak is 256 whatever the depth, and 100 on L. 8-bit values are 0.034 dB above those of
/// "PSNR". Sequence: the PSNR of the mean error, without a limit.
class CPsnr256Metric : public CPsnrFamily {
public:
    explicit CPsnr256Metric(MetricParameters parameters);
};

/// "APSNR": the peak of the sample depth. Sequence: the mean of the frames' values, equal frames counting 100
/// each.
class CApsnrMetric : public CPsnrFamily {
public:
    explicit CApsnrMetric(MetricParameters parameters);
};

/// "APSNR (256)": the peak of "PSNR (256)" with the sequence value of "APSNR".
class CApsnr256Metric : public CPsnrFamily {
public:
    explicit CApsnr256Metric(MetricParameters parameters);
};

}  // namespace Metric
