#pragma once

#include <vector>

#include "metric/metric_base.h"

namespace Metric {

/// Sharpness of a picture, the mean strength of its local gradients: "Lumetry Blurring BETA".
///
/// Input    one Y, U or V plane; with visualization the planes of two videos.
/// Formula  mean over the inner pixels of g = |P(x - 1, y) - P(x + 1, y)| + |P(x, y - 1) - P(x, y + 1)|.
///          A sequence's value is the mean of its frames', for each of the videos.
/// Result   from 0, a flat picture, to 512; higher is sharper. Grain and noise raise it too, so it compares
///          versions of one video, not different ones.
/// Source   the sum of absolute gradients, a common focus measure: Subbarao, Choi, Nikzad, "Focusing
///          techniques", Optical Engineering 32(11), 1993; here with central differences and without a
///          threshold.
/// Numbers  float. The sum adds pixel by pixel, rows from the top; this order belongs to the measure, for
///          in a big picture every addition rounds.
/// Map      g of the first less g of the second, 0 at the picture's edge: red where the first is sharper,
///          green where the second is.
/// Cost     an addition after the other for every pixel, which hides all the rest: quicker than it would be
///          to regroup them, for whole numbers make halves that only the order decides. A frame allocates
///          nothing but its result.
class CBlurringMetric : public CMetric {
public:
    explicit CBlurringMetric(MetricParameters parameters);
    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    /// Needs two images and gives two values.
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    /// One result on file 0; with visualization another one on file 1.
    std::vector<MetricResultInfo> GetResultInfo(bool visualize) override;
    std::vector<MetricValue> GetAverages(bool visualize) override;
    std::vector<int> GetComponents() override { return {ComponentY, ComponentU, ComponentV}; }
    /// One entry, or one for each file.
    void AddFrameValues(std::vector<float> values) override;
    void Visualize(rkVideoImage& target, int component) override;
    std::vector<int> GetResultIds() override { return {resultId, secondResultId}; }

private:
    float Sharpness(const float* plane) const;
    void FillMap(const float* first, const float* second, float* map) const;

    int secondResultId;
    double secondSum = 0;  ///< of the second file's frame values
};

}  // namespace Metric
