#pragma once

#include <array>
#include <utility>
#include <vector>

#include "kernels/plane.h"
#include "metric/metric_base.h"
#include "metrics/gauss_window_ssim.h"
#include "metrics/three_ssim_segments.h"

namespace Metric {

/// Structural similarity of edges, textures and smooth areas, the edges counting most: "3SSIM".
///
/// Input    two Y planes, padded to multiples of 8.
/// Formula  0.7 edges + 0.15 smooth areas + 0.15 textures, each the mean of "SSIM (precise)" over its
///          pixels, or 1 if there are none. With g1, g2 the gradients of the two pictures at a pixel and m
///          the greatest of all, an edge has g1 or g2 above 0.12 m, a texture is what else has g1 of at least
///          0.06 m, the rest is smooth. A gradient is the length of the vector of the two Sobel filters. A
///          sequence's value is the mean of its frames'.
/// Result   1 for equal pictures, higher is better; below 0 for opposite ones. Rounding can carry it past 1.
/// Source   Li, Bovik, "Three-component weighted structural similarity index", Proc. SPIE 7242, 2009.
/// Departs  the paper weighs edges by 0.5, the others by 0.25 each, and m is the original's. Here the picture
///          lies on black, so that the rim of a bright one is an edge.
/// Numbers  the map as in "SSIM (precise)", gradients in float. The values of each kind are added one by one
///          to a float, in the order of reading; its roundings belong to the measure.
/// Map      the pixels' SSIM. Painted as by "SSIM (precise)", but smooth areas in blue, textures in green,
///          edges in red.
/// Cost     11 ms at 1080p on one core with AVX-512, 9 on two: a team shares the rows of all but the last
///          pass. A frame allocates nothing but its result.
class C3SSIMMetricIpp : public CMetric {
public:
    explicit C3SSIMMetricIpp(MetricParameters parameters);
    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    std::vector<int> GetComponents() override { return {ComponentY}; }
    void Visualize(rkVideoImage& target, int component) override;

private:
    float WeighSegments(const std::vector<CMetricImage*>& images);
    /// Fills `segments`; how many pixels each of them has.
    std::array<int, kSegmentCount> SplitPicture(const std::pair<const float*, const float*>& pair);

    GaussWindowSSIM ssim;
    Kernels::BytePlane segments;  ///< a `Segment` a pixel
};

}  // namespace Metric
