#include "gpu/cuda_metric.h"

#include <algorithm>

#include "gpu/upload.h"

namespace Metric {

namespace {

/// Makes the device current before the first member is made on it.
Gpu::CheckedGpu Using(const Gpu::CheckedGpu& gpu) {
    gpu.Use();
    return gpu;
}

}  // namespace

CudaMetric::CudaMetric(const Gpu::GpuDevice& device, MetricParameters metricParameters,
                       const char* sourceName, Gpu::TextureFilter filter)
    : CMetric(std::move(metricParameters), 8, 8, true),
      gpu(Using({device, sourceName})),
      level(Gpu::MakeGpuLevel(paddedWidth, paddedHeight)),
      taps(Gpu::MakeGaussTaps()),
      orig(gpu, 1, level.alignedWidth, level.alignedHeight, filter),
      proc(gpu, 1, level.alignedWidth, level.alignedHeight, filter),
      sums(gpu, level),
      origStaging(gpu, level.AlignedCount(), Gpu::PinnedFor::Upload),
      procStaging(gpu, level.AlignedCount(), Gpu::PinnedFor::Upload) {}

std::vector<MetricValue> CudaMetric::Measure(const std::vector<CMetricImage*>& images) {
    MeasureImages(images, false);
    return Result(value);
}

std::vector<MetricValue> CudaMetric::MeasureAndVisualize(const std::vector<CMetricImage*>& images,
                                                         rkVideoImage& target) {
    MeasureImages(images, true);
    FetchMap();
    Visualize(target, ComponentY);
    return Result(value);
}

void CudaMetric::MeasureImages(const std::vector<CMetricImage*>& images, bool keepMap) {
    gpu.Use();
    const auto [first, second] = GetPlanes(images, ComponentY);
    Gpu::UploadPlane(first, level, orig, origStaging);
    Gpu::UploadPlane(second, level, proc, procStaging);
    value = std::min(MeasureFrame(keepMap), 1.0f);  // not a number stays that
    AddFrameValues({value});
}

}  // namespace Metric
