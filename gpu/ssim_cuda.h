#pragma once

#include "gpu/cuda_metric.h"

namespace Metric {

/// Structural similarity under a Gaussian window around each pixel, on a GPU: "SSIM (CUDA)".
///
/// Input    two Y planes, padded to multiples of 8 by repeating the last column and row, which count like
///          the others.
/// Formula  mean over the pixels of (2 mx my + C1) (2 sxy + C2) / ((mx^2 + my^2 + C1) (sx^2 + sy^2 + C2)),
///          see `WindowSums::Ssim`, C1 = 6.5025, C2 = 58.5225 whatever the images' peak. The window is a
///          Gaussian of 11 by 11 with sigma 1.5; its weights add up to 0.9996. A sequence's value is the
///          mean of its frames'.
/// Result   1 for equal pictures up to rounding, and never above; higher is better, below 0 is possible.
/// Source   Wang, Bovik, Sheikh, Simoncelli, "Image quality assessment: from error visibility to structural
///          similarity", IEEE Trans. Image Processing 13(4), 2004.
/// Departs  as "SSIM (precise)" does, and by weights that don't add up to 1: a constant brightness of b looks
///          like a variance of 0.00038 b^2, so that flat areas score higher, 0.922 for 0.912 on a coded clip.
/// Numbers  all in float, in a given order: columns first, then rows. A card and the host give the same
///          bits.
/// Map      painted grey, 0 and black where equal, limited to 255.
class CSSIMCUDAMetric : public CudaMetric {
public:
    CSSIMCUDAMetric(const Gpu::GpuDevice& device, MetricParameters parameters);
    ~CSSIMCUDAMetric() override { gpu.Use(); }
    void Visualize(rkVideoImage& target, int component) override;

protected:
    float MeasureFrame(bool keepMap) override;

private:
    void FetchMap() override;

    Gpu::TextureArray mix;  // sums of the first pass: of a, a * a, b, b * b
    Gpu::TextureArray XY;   // and of a * b
    Gpu::DeviceBuffer<Gpu::Float4> muX;
    Gpu::DeviceBuffer<float> muXY;
    Gpu::DeviceBuffer<float> ssim_map;
    Gpu::PinnedBlock hostMap;
};

}  // namespace Metric
