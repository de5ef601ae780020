#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "kernels/plane.h"
#include "metric/metric_base.h"
#include "metrics/flat_byte_windows.h"
#include "metrics/msssim_levels.h"

namespace Metric {

/// Structural similarity on up to five scales, with the flat window of "SSIM (fast)": "MSSSIM".
///
/// Input    two Y planes, padded to multiples of 8. From level to level their sides are halved, as long as
///          neither falls below 8: five levels from 128 by 128 on.
/// Formula  product of the levels' means over their windows: at the last level of SSIM, at the others of
///          contrast and structure, (2 sxy + C2) / (sx^2 + sy^2 + C2), to the power of the level's weight.
///          A sequence's value is the mean of its frames'.
/// Result   1 for equal pictures, higher is better. Not a number if a level's mean of contrast and structure
///          is below 0, as for a picture and its negative.
/// Source   Wang, Simoncelli, Bovik, "Multiscale structural similarity for image quality assessment",
///          Asilomar Conference on Signals, Systems and Computers, 2003. Here the window is flat, a picture
///          is halved by means of 2 by 2 pixels, and the last level has the exponent 1 in place of its
///          weight, also where there are fewer than five.
/// Numbers  a window in float as in "SSIM (fast)", by running sums from the top of each level's picture.
///          Their roundings belong to the measure: at 1080p they move the value in the third digit from that
///          of exact sums. The windows of a level are added one by one to a double.
/// Map      a level's values, each at its window's right column and top row, the leftmost also left of that.
///          The bottom 7 rows of a level have none and stay 1. Painted by `PaintLevels`, which gives the last
///          level its weight.
/// Cost     4.1 ms at 1080p on one core with AVX-512. A frame allocates nothing but its result and what
///          painting needs.
class CMSSSIMMetric : public CMetric {
public:
    explicit CMSSSIMMetric(MetricParameters parameters);
    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    std::vector<int> GetComponents() override { return {ComponentY}; }
    void Visualize(rkVideoImage& target, int component) override;

private:
    struct Pictures {
        const float* first;
        const float* second;
    };
    struct Constants {
        float c1;
        float c2;
    };

    void AddLevel(int width, int height);
    float ProductOfLevels(const std::vector<CMetricImage*>& images, bool wantsMaps);
    /// The pictures of a level behind the first.
    Pictures PicturesOf(std::size_t level) const;
    /// Makes those of the second level.
    void HalveFrame(const Pictures& frame);
    void HalveFrame(const Kernels::BytePictures& frame);
    /// Makes those of the next level but these.
    void HalveLevel(std::size_t level);
    /// Fills the level's map.
    double MeanOfLevel(const Pictures& pictures, std::size_t level, const Constants& constants,
                       void* levelScratch);
    /// The mean of the first level, which isn't the last; fills its map if it is wanted.
    double MeanOfBytes(const Kernels::BytePictures& frame, float c2, bool wantsMap);

    std::vector<LevelMap> levels;                            // the finest first
    std::vector<std::array<Kernels::FloatPlane, 2>> halved;  // pictures of the levels behind the first
    Kernels::BytePlane scratch;
    Kernels::BytePlane scratchOfCoarser;
    FlatByteWindows byteWindows;
};

}  // namespace Metric
