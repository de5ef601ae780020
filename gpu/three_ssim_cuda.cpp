#include "gpu/three_ssim_cuda.h"

#include <utility>

#include "gpu/gray_map.h"

namespace Metric {

using Gpu::kDefaultStream;
using Gpu::TextureFilter;

C3SSIMCUDAMetric::C3SSIMCUDAMetric(const Gpu::GpuDevice& device, MetricParameters metricParameters)
    : CudaMetric(device, std::move(metricParameters), "3SSIM_CUDA", TextureFilter::Point),
      stream0(gpu),
      stream1(gpu),
      mix(gpu, 4, level.alignedWidth, level.alignedHeight, TextureFilter::Point),
      XY(gpu, 1, level.alignedWidth, level.alignedHeight, TextureFilter::Point),
      muX(gpu, level.AlignedCount()),
      muXY(gpu, level.AlignedCount()),
      binarymap(gpu, level.AlignedCount()),
      ssim_map(gpu, level.AlignedCount()),
      hostMap(gpu, level.AlignedCount(), Gpu::PinnedFor::Results) {
    id = L"3ssim_cuda";
    name = L"3SSIM (CUDA)";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#ssim");
}

float C3SSIMCUDAMetric::MeasureFrame(bool keepMap) {
    const Gpu::cuda_ssim3_sobel sobel = {orig.Texture(), proc.Texture(), binarymap.Get(), level.alignedWidth};
    gpu.Check(gpu->Launch(sobel, ShapeOf(level), stream1.Get()));
    ComputeMap();
    if (keepMap) {
        // In the map's own stream the copy to `XY` has been done, so `muXY` is free.
        const std::size_t bytes = level.AlignedCount() * sizeof(float);
        gpu.Check(gpu->MemcpyAsync(muXY.Get(), ssim_map.Get(), bytes, stream0.Get()));
    }
    return WeightedSum();
}

void C3SSIMCUDAMetric::ComputeMap() {
    const int width = level.alignedWidth;
    gpu.Check(
        gpu->Launch(Gpu::cuda_ssim3_rows{orig.Texture(), proc.Texture(), muX.Get(), muXY.Get(), width, taps},
                    ShapeOf(level), stream0.Get()));
    mix.CopyFrom(muX.Get(), width, width, level.alignedHeight, stream0.Get());
    XY.CopyFrom(muXY.Get(), width, width, level.alignedHeight, stream0.Get());
    gpu.Check(gpu->Launch(Gpu::cuda_ssim3_columns{mix.Texture(), XY.Texture(), ssim_map.Get(), width, taps},
                          ShapeOf(level), stream0.Get()));
}

float C3SSIMCUDAMetric::WeightedSum() {
    const long double edges = sums.SumOfMap(level, binarymap.Get(), stream1.Get());
    gpu.Check(gpu->StreamSynchronize(stream1.Get()));
    const Gpu::cuda_ssim3_segment segment = {ssim_map.Get(), binarymap.Get(), static_cast<double>(1 / edges),
                                             static_cast<double>(1 / (level.pixelCount - edges)),
                                             level.alignedWidth};
    gpu.Check(gpu->Launch(segment, {level.alignedWidth, level.alignedHeight, 32, 8}, stream0.Get()));
    return sums.SumOfMap(level, ssim_map.Get(), stream0.Get());
}

void C3SSIMCUDAMetric::FetchMap() {
    gpu.Check(gpu->Launch(Gpu::cuda_ssim3_vis{muXY.Get(), binarymap.Get(), level.alignedWidth},
                          ShapeOf(level), kDefaultStream));
    gpu.Check(gpu->Memcpy(hostMap.Get(), muXY.Get(), level.AlignedCount() * sizeof(float)));
}

void C3SSIMCUDAMetric::Visualize(rkVideoImage& target, int) {
    PaintGrayMap(hostMap.Get(), level.alignedWidth, target);
}

}  // namespace Metric
