#pragma once

#include "metrics/difference_metric.h"

namespace Metric {

/// Mean absolute difference: "MSAD".
///
/// Formula  mean of |first - second| over all pixels, on the component's own scale; 0 for equal frames, lower
///          is better.
/// Sequence mean of the frames' values.
/// Source   the common definition, known as MAD or, unscaled, as SAD.
/// Numbers  differences in float, summed in double in the order of `PlaneMean`, the mean rounded to float.
/// Map      the absolute difference; painted grey, times 10, white from 25.5 on.
class CMSADMetric : public CDifferenceMetric {
public:
    explicit CMSADMetric(MetricParameters parameters);
    void Visualize(rkVideoImage& target, int component) override;

private:
    float Mean(const float* first, const float* second) const override;
    void FillMap(const float* first, const float* second, float* map) const override;
};

}  // namespace Metric
