#pragma once

#include "metrics/psnr_family.h"

namespace Metric {

/// Peak signal-to-noise ratio with the peak of the sample depth: "PSNR".
///
/// Formula  10 log10(peak^2 / MSE). The peak is 255 for bytes, 255.75, 255.984375 and 255.99609375 for 10, 14
///          and 16 bits, of two depths the smaller; 100 for L. 100 dB for equal frames, and at most that.
/// Sequence PSNR of the mean error: a single bad frame weighs more than in a mean of values. No limit: a tiny
///          mean error gives more than 100.
/// Source   the common definition, which is infinite for equal frames. The limit of 100 is our own.
/// Numbers  peak squared, the product with 10 and the sequence's logarithm in float.
/// Cost     see `CPsnrFamily`.
class CPSNRMetric : public CPsnrFamily {
public:
    explicit CPSNRMetric(MetricParameters parameters);

private:
    double Square(float samplePeak) const override;
    float FrameDecibels(double error) const override;
    float SequenceDecibels(float meanError) const override;
};

}  // namespace Metric
