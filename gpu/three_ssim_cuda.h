#pragma once

#include "gpu/cuda_metric.h"

namespace Metric {

/// SSIM of the edges and of the rest, weighted 0.7 to 0.3, on a GPU: "3SSIM (CUDA)".
///
/// Input    two Y planes, padded to multiples of 8.
/// Regions  an edge is a pixel whose Sobel magnitude is above 30.6 in both pictures; at the border the
///          nearest pixels are repeated.
/// Value    0.7 times the mean of the SSIM map over the edges and 0.3 times that over the rest; a region
///          without pixels adds 0, so that equal flat pictures give 0.3. At most 1. A sequence's value is
///          the mean of its frames'.
/// Source   after Li and Bovik, "Three-component weighted structural similarity index", SPIE 7242, 2009,
///          whose three regions with relative thresholds "3SSIM" has: the two don't agree in value.
/// Numbers  the map as "SSIM (CUDA)" has it, rows first, then columns. A card and the host give the same
///          bits.
/// Map      painted grey, 0 and black where equal, limited to 255; the rest at 3/7 of the edges'
///          brightness.
class C3SSIMCUDAMetric : public CudaMetric {
public:
    C3SSIMCUDAMetric(const Gpu::GpuDevice& device, MetricParameters parameters);
    ~C3SSIMCUDAMetric() override { gpu.Use(); }
    void Visualize(rkVideoImage& target, int component) override;

protected:
    float MeasureFrame(bool keepMap) override;

private:
    void FetchMap() override;
    void ComputeMap();
    float WeightedSum();

    Gpu::Stream stream0;    // the map and what follows from it
    Gpu::Stream stream1;    // the edges, beside it
    Gpu::TextureArray mix;  // sums of the first pass: of a, a * a, b, b * b
    Gpu::TextureArray XY;   // and of a * b
    Gpu::DeviceBuffer<Gpu::Float4> muX;
    Gpu::DeviceBuffer<float> muXY;  // later the map before it is weighted, for the picture
    Gpu::DeviceBuffer<float> binarymap;
    Gpu::DeviceBuffer<float> ssim_map;
    Gpu::PinnedBlock hostMap;
};

}  // namespace Metric
