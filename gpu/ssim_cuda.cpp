#include "gpu/ssim_cuda.h"

#include <utility>

#include "gpu/gray_map.h"

namespace Metric {

using Gpu::kDefaultStream;
using Gpu::TextureFilter;

CSSIMCUDAMetric::CSSIMCUDAMetric(const Gpu::GpuDevice& device, MetricParameters metricParameters)
    : CudaMetric(device, std::move(metricParameters), "SSIM_CUDA", TextureFilter::Point),
      mix(gpu, 4, level.width, level.height, TextureFilter::Point),
      XY(gpu, 1, level.width, level.height, TextureFilter::Point),
      muX(gpu, level.AlignedCount()),
      muXY(gpu, level.AlignedCount()),
      ssim_map(gpu, level.AlignedCount()),
      hostMap(gpu, level.AlignedCount(), Gpu::PinnedFor::Results) {
    id = L"ssim_cuda";
    name = L"SSIM (CUDA)";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#ssim");
}

float CSSIMCUDAMetric::MeasureFrame(bool) {
    const int width = level.alignedWidth;
    gpu.Check(gpu->Launch(
        Gpu::cuda_ssim_columns{orig.Texture(), proc.Texture(), muX.Get(), muXY.Get(), width, taps},
        ShapeOf(level), kDefaultStream));
    // Only the picture goes across, so that the second pass repeats the picture's own last column and row.
    mix.CopyFrom(muX.Get(), width, level.width, level.height, kDefaultStream);
    XY.CopyFrom(muXY.Get(), width, level.width, level.height, kDefaultStream);
    gpu.Check(gpu->Launch(Gpu::cuda_ssim_rows{mix.Texture(), XY.Texture(), ssim_map.Get(), width, taps},
                          ShapeOf(level), kDefaultStream));
    return sums.MeanOfMap(level, ssim_map.Get(), kDefaultStream);
}

void CSSIMCUDAMetric::FetchMap() {
    gpu.Check(
        gpu->Launch(Gpu::cuda_ssim_vis{ssim_map.Get(), level.alignedWidth}, ShapeOf(level), kDefaultStream));
    gpu.Check(gpu->Memcpy(hostMap.Get(), ssim_map.Get(), level.AlignedCount() * sizeof(float)));
}

void CSSIMCUDAMetric::Visualize(rkVideoImage& target, int) {
    PaintGrayMap(hostMap.Get(), level.alignedWidth, target);
}

}  // namespace Metric
