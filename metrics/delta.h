#pragma once

#include "metrics/difference_metric.h"

namespace Metric {

/// Mean signed difference: "Delta".
///
/// Formula  mean of first - second over all pixels, on the component's own scale: positive where the first
///          file is brighter. 0 for equal frames, but not for them alone; swapping the files changes the sign
///          and nothing else.
/// Sequence mean of the frames' values.
/// Source   the mean error, or bias, of statistics. It is no measure of quality by itself: a value below 0
///          isn't better, though "lower is better" stands here as for its sisters.
/// Numbers  float. The order of additions is that of `PlaneMean`.
/// Map      the difference; painted times 3, red where the first file is brighter, green where the second is.
class CDeltaMetric : public CDifferenceMetric {
public:
    explicit CDeltaMetric(MetricParameters parameters);
    void Visualize(rkVideoImage& target, int component) override;

private:
    float Mean(const float* first, const float* second) const override;
    void FillMap(const float* first, const float* second, float* map) const override;
};

}  // namespace Metric
