#pragma once

#include <vector>

#include "metric/metric_base.h"
#include "metrics/gauss_window_ssim.h"

namespace Metric {

/// Structural similarity under a Gaussian window around each pixel: "SSIM (precise)".
///
/// Input    two Y planes, padded to multiples of 8.
/// Formula  mean over the pixels of (2 mx my + C1) (2 sxy + C2) / ((mx^2 + my^2 + C1) (sx^2 + sy^2 + C2))
///          from the window's means, variances and covariance, C1 = (0.01 peak)^2, C2 = (0.03 peak)^2. The
///          window is a Gaussian of 11 by 11 with sigma 1.5. A sequence's value is the mean of its frames'.
/// Result   1 for equal pictures and never above, higher is better; below 0 for opposite ones.
/// Source   Wang, Bovik, Sheikh, Simoncelli, "Image quality assessment: from error visibility to structural
///          similarity", IEEE Trans. Image Processing 13(4), 2004.
/// Departs  every pixel counts: at the border the window sees the nearest pixels repeated, where the authors'
///          program takes only windows inside the picture. Pictures aren't made smaller first, however big.
/// Numbers  the window's sums in float, the formula in double and rounded to float, the mean in double.
/// Map      the pixels' values; only a frame that is painted fills it. Painted grey: black where equal,
///          brighter where worse; values below 0 wrap around.
/// Cost     6 ms at 1080p on one core with AVX-512, most of it for the five filters, 3 on two: a team shares
///          the rows. A frame allocates nothing but its result.
class CSSIMMetricIpp : public CMetric {
public:
    explicit CSSIMMetricIpp(MetricParameters parameters);
    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    std::vector<int> GetComponents() override { return {ComponentY}; }
    void Visualize(rkVideoImage& target, int component) override;

private:
    /// Fills the map unless it is null.
    float Mean(const std::vector<CMetricImage*>& images, float* map);

    GaussWindowSSIM ssim;
};

}  // namespace Metric
