#pragma once

#include <vector>

#include "kernels/plane.h"
#include "metric/metric_base.h"
#include "metrics/gauss_window_ssim.h"
#include "metrics/stssim_history.h"
#include "metrics/stssim_lines.h"

namespace Metric {

/// Spatio-temporal structural similarity: "stSSIM".
///
/// Input    two Y planes, padded to multiples of 8; a run's frames in order, none missing.
/// Formula  spatial score times temporal score, each the mean of the worst 6 percent of the pixels. Spatial:
///          "SSIM (precise)" of the middle one of 33 frames. Temporal: structural similarity of windows of 11
///          pixels by 33 frames along lines through the middle frame's pixels, that lie along the motion of
///          the first sequence. A sequence's value is the mean of its frames', the first 32 left out.
/// Result   1 for equal sequences and never above, higher is better. 0 for the first 32 frames; then what a
///          frame gives is the value of the frame 32 before it in the results.
/// Source   Moorthy, Bovik, "Efficient motion weighted spatio-temporal video SSIM index", Proc. SPIE 7527,
///          2010.
/// Departs  the motion chooses a line, it doesn't weigh or move anything.
/// Numbers  spatial as in "SSIM (precise)"; temporal on samples rounded to bytes, in double, stored as
///          floats.
/// Pool     the temporal values stand in rows of the width rounded up to 16; the first width times height of
///          them are pooled and painted, whatever the width. A picture lower than 17 pixels has no 6 percent
///          of rows: 1.
/// Map      255 less 255 times both scores of the pixel: black where equal, painted grey. Nothing is painted
///          for the first 32 frames.
/// Cost     60 ms at 1080p on one core with AVX-512, a team shares all but the search for motion and the
///          pools.
/// Memory   33 frames in bytes and 17 in floats of each sequence: 420 MB at 1920 by 1080. A frame allocates
///          nothing but its result once the lists of motion vectors have grown.
class CSTSSIMMetric : public CMetric {
public:
    explicit CSTSSIMMetric(MetricParameters parameters);
    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    std::vector<MetricValue> GetAverages(bool visualize) override;
    std::vector<int> GetComponents() override { return {ComponentY}; }
    void Visualize(rkVideoImage& target, int component) override;

private:
    void TakeFrame(const std::vector<CMetricImage*>& images);
    void CompareWindow(const SSIMConstants& constants);
    double PooledScore(const float* values);

    int poolRows;  ///< rows' worth of pixels that a pool holds
    int filledFrames = 0;
    SequenceHistory first;
    SequenceHistory second;
    MotionLines lines;
    GaussWindowSSIM ssim;
    Kernels::FloatPlane temporalMap;  ///< rows of the lines' aligned width
    int temporalRows;                 ///< as many as hold the pooled values
    Kernels::BytePlane temporalScratch;
    Kernels::FloatPlane poolScratch;
};

}  // namespace Metric
