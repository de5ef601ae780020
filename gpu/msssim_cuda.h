#pragma once

#include <deque>

#include "gpu/cuda_metric.h"

namespace Metric {

/// Structural similarity at five scales on a GPU: "MSSSIM (CUDA)".
///
/// Input    two Y planes, padded to multiples of 8.
/// Levels   always five, each the means of blocks of 2 by 2 of the one before; sides are halved rounding
///          up, so they never get below 1. The vertical window of a level above the first covers 11 rows of
///          the finer level.
/// Value    the product of the levels' means of SSIM, luminance included, each to the power of its weight:
///          0.0448, 0.2856, 0.3001, 0.2363, 0.1333. At most 1. A negative mean has no real power: the value
///          isn't a number then, nor is the sequence's, which is the mean of its frames' values.
/// Result   1 for equal pictures up to rounding; higher is better.
/// Source   Wang, Simoncelli, Bovik, "Multiscale structural similarity for image quality assessment",
///          Asilomar Conference, 2003.
/// Departs  the paper has luminance at the last scale only and low-pass filters before it halves. "MSSSIM
///          (precise)" differs in more: see the documentation of the metrics.
/// Numbers  the maps and means in float, powers and product in double. A card and the host give the same
///          bits for samples of 16 bits or less.
/// Map      the product of the maps, coarse ones enlarged bilinearly; painted grey, 0 and black where
///          equal, limited to 255; black where it isn't a number.
class CMSSSIMCUDAMetric : public CudaMetric {
public:
    CMSSSIMCUDAMetric(const Gpu::GpuDevice& device, MetricParameters parameters);
    ~CMSSSIMCUDAMetric() override { gpu.Use(); }
    void Visualize(rkVideoImage& target, int component) override;

protected:
    float MeasureFrame(bool keepMap) override;

private:
    /// What a level has on the device.
    struct Level : Gpu::NotCopied {
        Level(const Gpu::CheckedGpu& gpu, const Gpu::GpuLevel& size);

        Gpu::GpuLevel size;
        Gpu::TextureArray mix;  // sums of the first pass: of a, a * a, b, b * b
        Gpu::TextureArray XY;   // and of a * b
        Gpu::DeviceBuffer<Gpu::Float4> muX;
        Gpu::DeviceBuffer<float> muXY;
        Gpu::DeviceBuffer<float> ssim_map;  // kept for the whole frame
        Gpu::BufferTexture mapTexture;
    };
    /// The pictures of a level that is made from a finer one.
    struct ReducedPictures : Gpu::NotCopied {
        ReducedPictures(const Gpu::CheckedGpu& gpu, const Gpu::GpuLevel& size);

        Gpu::TextureArray orig;
        Gpu::TextureArray proc;
        Gpu::DeviceBuffer<float> new_orig;  // as the first pass writes them
        Gpu::DeviceBuffer<float> new_proc;
    };

    void FetchMap() override;
    void SumColumns(Level& finest);
    void SumColumnsReducing(Level& coarse, const Gpu::TextureArray& finerOrig,
                            const Gpu::TextureArray& finerProc, ReducedPictures& pictures);
    void ComputeMap(Level& at);

    std::deque<Level> levels;
    std::deque<ReducedPictures> reduced;  // of the levels from the second on
};

}  // namespace Metric
