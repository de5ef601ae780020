#pragma once

#include "metric/metric_base.h"

namespace Metric {

/// What MSE, MSAD and Delta share: a number for each pixel of two planes, whose mean is the frame's value and
/// which itself is the map. 0 for equal frames, lower is better; a sequence's value is the mean of the
/// frames'. One pass over both planes, bound by memory; a second one for the map.
class CDifferenceMetric : public CMetric {
public:
    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    std::vector<int> GetComponents() override { return {kDisplayOrder.begin(), kDisplayOrder.end()}; }

protected:
    CDifferenceMetric(MetricParameters parameters, const wchar_t* id, const wchar_t* name,
                      const wchar_t* infoPath);

private:
    /// Mean over the padded planes.
    virtual float Mean(const float* first, const float* second) const = 0;
    virtual void FillMap(const float* first, const float* second, float* map) const = 0;
};

}  // namespace Metric
