#pragma once

#include <cstddef>
#include <vector>

#include "metric/metric_base.h"
#include "metrics/blocking_line.h"

namespace Metric {

/// Visibility of a codec's 8 by 8 block grid, seen in one video alone: "Lumetry Blocking (MPEG-4) BETA".
///
/// Input    one Y plane, seen upside down. Differences of samples are cut to integers.
/// Place    a pixel's position along a line of the grid; the lines lie behind columns and rows 7, 15, ...
///          of the copy. A place is seen with its neighbours along the line within the block, n = 2 or 3
///          rows of samples p0 p1 | p2 p3 across the line.
/// Formula  jump = (p1 - p2) - floor(((p0 - p1) + (p2 - p3)) / 2), e = |p0 - p1| + |p2 - p3| for each row;
///          s = |sum of jumps| / n, h = s / 2, a = |changes of p1| + |changes of p2| along the line;
///          strength = s * h / (a + 1) * mean of h / (e + 1), cut to an integer;
///          16 times the whole part of s where a and all e together are at most n: flat surroundings;
///          -1 where |mean of p1 - p2|, cut, is above `edgeLimit`: a real edge. At vertical lines at most
///          255, flat surroundings included, but without a limit in a block's last row.
/// Result   the mean of the strengths above 0, or 0 if there are none; lower is better, no upper limit.
///          A sequence's value is the mean of its frames'.
/// Source   a measure of its own. Kin to Wu and Yuen, "A generalized block-edge impairment metric for video
///          coding", IEEE Signal Processing Letters 4(11), 1997: the step over the grid, masked by the
///          activity around it; without their luminance weights and comparison with steps off the grid.
/// Numbers  s, h and all quotients are floats. Strengths are added in float: vertical lines from the left,
///          each from the picture's bottom, then horizontal lines from the bottom, each from the left. This
///          order belongs to the measure.
/// Map      grey at the lines, black elsewhere; see `Paint`.
/// Cost     half a million places at 1920 by 1080, six divisions each. A frame allocates nothing but its
///          result.
class CBlockingMetric : public CMetric {
public:
    explicit CBlockingMetric(MetricParameters parameters);
    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    std::vector<MetricResultInfo> GetResultInfo(bool visualize) override;  ///< one result on file 0
    std::vector<int> GetComponents() override { return {ComponentY}; }
    void Visualize(rkVideoImage& target, int component) override;

private:
    /// Takes the frame's value from `plane`; fills the map unless it is null.
    void MeasureFrame(const float* plane, float* map);
    void MeasureLine();
    /// Paints the line's strengths: place 0 at `cell`, the next ones `along` floats further, each a second
    /// time `across` floats further. The strength painted is at most `stepLimit` above or below `previous`,
    /// the one painted before it, on whichever line; but a block's first place starts afresh unless it is
    /// 0. The map gets at most 255, `previous` the strength itself.
    void Paint(float* cell, std::ptrdiff_t along, std::ptrdiff_t across, float& previous) const;

    int edgeLimit = 40;
    int stepLimit = 50;
    GridLine line;
    std::vector<float> strengths;  ///< along `line`
    float strengthSum = 0;         ///< of the frame so far
    int strengthCount = 0;         ///< strengths above 0
};

}  // namespace Metric
