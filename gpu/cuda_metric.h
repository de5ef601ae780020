#pragma once

#include <utility>
#include <vector>

#include "gpu/level.h"
#include "gpu/reduction.h"
#include "gpu/storage.h"
#include "metric/metric_base.h"

namespace Metric {

/// What the metrics on a GPU share: two Y planes, padded to multiples of 8 and sent to the device, and the
/// course of a frame. Everything on the device is made at construction; a frame allocates nothing but its
/// result.
///
/// Failure  of a runtime call ends the process with status -1 and a line on standard error, see
///          `CheckedGpu`.
/// Threads  any, one at a time an instance; instances share nothing on the device but its time.
class CudaMetric : public CMetric {
public:
    std::vector<MetricValue> Measure(const std::vector<CMetricImage*>& images) override;
    std::vector<MetricValue> MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                 rkVideoImage& target) override;
    std::vector<int> GetComponents() override { return {ComponentY}; }
    bool NeedsGpu() override { return true; }

protected:
    /// `sourceName` is what a failure's message names as its source. `filter`: how kernels read the planes.
    CudaMetric(const Gpu::GpuDevice& device, MetricParameters parameters, const char* sourceName,
               Gpu::TextureFilter filter);

    /// The value of a frame whose planes stand in `orig` and `proc`; it is limited to 1 afterwards. With
    /// `keepMap` the map remains for `FetchMap`.
    virtual float MeasureFrame(bool keepMap) = 0;
    /// Turns the map of the last frame into what `Visualize` paints, on the host.
    virtual void FetchMap() = 0;

    /// A launch for every element of a level's aligned size.
    static Gpu::LaunchShape ShapeOf(const Gpu::GpuLevel& level) {
        return {level.alignedWidth, level.alignedHeight};
    }

    Gpu::CheckedGpu gpu;
    Gpu::GpuLevel level;  ///< of the padded picture
    Gpu::GaussTaps taps;
    Gpu::TextureArray orig;
    Gpu::TextureArray proc;
    Gpu::MapSum sums;

private:
    void MeasureImages(const std::vector<CMetricImage*>& images, bool keepMap);

    Gpu::PinnedBlock origStaging;
    Gpu::PinnedBlock procStaging;
};

}  // namespace Metric
