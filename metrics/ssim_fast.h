#pragma once

#include <vector>

#include "kernels/plane.h"
#include "metric/metric_base.h"
#include "metrics/flat_byte_windows.h"

namespace Metric {

/// Structural similarity under a flat window of 8 by 8 pixels, moved over the picture: "SSIM (fast)".
///
/// Input    two Y planes, padded to multiples of 8.
/// Formula  mean over the windows of (2 mx my + C1) (2 sxy + C2) / ((mx^2 + my^2 + C1) (sx^2 + sy^2 + C2))
///          from a window's means, variances and covariance, C1 = (0.01 peak)^2, C2 = (0.03 peak)^2; computed
///          from sums over the window. A sequence's value is the mean of its frames'.
/// Result   1 for equal pictures, higher is better; below 0 for opposite ones. Rounding can carry it past 1.
/// Source   Wang, Bovik, Sheikh, Simoncelli, "Image quality assessment: from error visibility to structural
///          similarity", IEEE Trans. Image Processing 13(4), 2004. There the window is a Gaussian of 11 by
///          11; here it is flat, and variances are divided by 64, not 63. A measure of its own, not a faster
///          "SSIM (precise)".
/// Numbers  float, and the roundings belong to the measure. Running sums down the columns start at the top of
///          the picture, and the windows are added one by one: to a float, or, where the picture is painted,
///          to a double. At 1080p this moves the value in the third digit from that of exact sums, in bright
///          flat pictures in the second, and the value with a painted picture from the one without. At 2^24
///          a float no longer grows by 1: bigger pictures come out too low.
/// Map      the windows' values, each at its right column and top row, the leftmost also left of that. The
///          bottom 7 rows have none and stay 1. Painted grey: black where equal, brighter where worse; values
///          below 0 wrap around.
/// Cost     2.3 ms at 1080p on one core with AVX-512: a pass over both planes to the map, and one over the
///          map. A frame allocates nothing but its result.
class CSSIMMetric : public CMetric {
public:
    explicit CSSIMMetric(MetricParameters parameters);
    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    std::vector<int> GetComponents() override { return {ComponentY}; }
    void Visualize(rkVideoImage& target, int component) override;

private:
    /// The windows added to 0; fills the map if it is wanted, else leaves anything in it.
    template <class Number>
    Number SumOfWindows(const std::vector<CMetricImage*>& images, bool wantsMap);
    float WindowCount() const;

    Kernels::BytePlane scratch;
    FlatByteWindows byteWindows;
};

}  // namespace Metric
