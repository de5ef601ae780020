#pragma once

#include "metric/metric_base.h"

namespace Metric {

/// The squared peak that an error is set against.
enum class PsnrPeak {
    OfImages,  ///< the smaller peak of the two images
    Fixed,     ///< 256, and 100 on L
};

/// What the sequence's value is made of.
enum class PsnrAverage {
    OfErrors,  ///< the PSNR of the frames' mean error
    OfValues,  ///< the mean of the frames' PSNR
};

/// What the four PSNR metrics share: the frame's error and value, the map and its picture.
///
/// Input    two planes of any component, on the scale of 0 to 256 (L: 0 to 100).
/// Result   10 log10(peak^2 / MSE) in dB, at most 100, and 100 for equal frames; higher is better.
///          A sequence's value by errors has no upper limit.
/// Map      the same formula for every pixel's squared error; 100 where that is at most 1.
/// Numbers  errors summed in double. `Measure` and `MeasureAndVisualize` add in different orders and may
///          differ in the last digits. The rest in double, unless a metric overrides the functions below.
/// Cost     one pass over both planes, bound by memory; the map costs a logarithm a pixel.
class CPsnrFamily : public CMetric {
public:
    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    std::vector<MetricValue> GetAverages(bool visualize) override;
    std::vector<int> GetComponents() override { return {kDisplayOrder.begin(), kDisplayOrder.end()}; }
    /// Black without a visible error, else blue, green, yellow, red in the order of badness.
    void Visualize(rkVideoImage& target, int component) override;

protected:
    CPsnrFamily(MetricParameters parameters, const wchar_t* id, const wchar_t* name, PsnrPeak peak,
                PsnrAverage averageOf);

    double peakSquared = 0;  ///< of the last frame

private:
    // The steps whose precision differs. Errors are above 0; the frame's value is limited by the caller.
    virtual double Square(float samplePeak) const;
    virtual float FrameDecibels(double error) const;
    virtual float SequenceDecibels(float meanError) const;

    void TakePeak(const std::vector<CMetricImage*>& images);
    double NormOfDifference(const std::vector<CMetricImage*>& images);
    double FillMap(const float* first, const float* second);
    void AddFrame(double error);

    PsnrPeak peak;
    PsnrAverage averageOf;
};

}  // namespace Metric
