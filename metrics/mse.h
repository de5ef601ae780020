#pragma once

#include "metrics/difference_metric.h"

namespace Metric {

/// Mean squared error: "MSE".
///
/// Formula  mean of (first - second)^2 over all pixels, on the component's own scale; 0 for equal frames,
///          lower is better.
/// Sequence mean of the frames' values.
/// Source   the common definition, with deep samples on the scale of bytes, so that all depths compare.
/// Numbers  float. The order of additions is that of `PlaneMean`.
/// Map      the squared error; painted grey, its root times 5. Nothing limits that: differences of 52 and
///          more wrap around.
class CMSEMetric : public CDifferenceMetric {
public:
    explicit CMSEMetric(MetricParameters parameters);
    void Visualize(rkVideoImage& target, int component) override;

private:
    float Mean(const float* first, const float* second) const override;
    void FillMap(const float* first, const float* second, float* map) const override;
};

}  // namespace Metric
