#pragma once

#include <vector>

#include "metric/metric_base.h"
#include "metrics/vqm_tables.h"

namespace Metric {

/// Distance of two pictures in the DCT domain, weighted by the eye's contrast sensitivity: "VQM".
///
/// Input    Y, cut to integers, in blocks of 8 by 8 pixels.
/// Formula  c = DCT of a block, each coefficient rounded to 16 bits; contrast = c (dc / 1024)^0.65 / dc;
///          d = |difference of the two contrasts| / `quantTable`, the inverse of a sensitivity;
///          frame = 10 (1000 mean of all d + 5 greatest d). A sequence's value is the mean of its frames'.
/// Result   0 for equal frames, lower is better; no upper limit.
/// Source   Xiao, "DCT-based video quality evaluation", Stanford University, EE392J, 2000, after Watson,
///          "Toward a perceptual video quality metric", Proc. SPIE 3299, 1998.
/// Departs  a still measure: no temporal filter, no sensitivity of its own for motion. Ten times the usual
///          value.
/// Numbers  the transform in double, the terms of a sum in ascending order, the result floor(c + 0.499999).
///          All else in float: a block's d are added in row order, then the blocks' means, blocks from the
///          left and rows of blocks from the top. These orders belong to the measure.
/// Map      a block's mean d times 256000, at most 255: grey.
/// Cost     124 million operations in double at 1920 by 1080; a team shares the rows of blocks. A frame
///          allocates nothing but its result.
class CVQMMetric : public CMetric {
public:
    explicit CVQMMetric(MetricParameters parameters);
    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    std::vector<int> GetComponents() override { return {ComponentY}; }
    void Visualize(rkVideoImage& target, int component) override;

private:
    /// Fills `blockSums` and `greatest`, and takes the frame's value from them.
    void CompareFrame(const std::vector<CMetricImage*>& images);
    void FillMap(float* map) const;

    const VqmTables& tables = VqmTables::Get();
    int blockColumns;
    int blockRows;
    std::vector<float> blockSums;  ///< of the last frame: a block's sum of differences, row by row
    std::vector<float> greatest;   ///< of the last frame: the greatest difference in each row of blocks
};

}  // namespace Metric
