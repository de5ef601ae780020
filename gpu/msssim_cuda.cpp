#include "gpu/msssim_cuda.h"

#include <cmath>
#include <utility>

#include "gpu/gray_map.h"

namespace Metric {

using Gpu::kDefaultStream;
using Gpu::TextureFilter;

namespace {

// The weights are known in single precision.
constexpr float kWeights[Gpu::kLevels] = {0.0448f, 0.2856f, 0.3001f, 0.2363f, 0.1333f};

Gpu::GpuLevel Halved(const Gpu::GpuLevel& finer, double weight) {
    return Gpu::MakeGpuLevel((finer.width + 1) / 2, (finer.height + 1) / 2, weight);
}

}  // namespace

CMSSSIMCUDAMetric::Level::Level(const Gpu::CheckedGpu& gpu, const Gpu::GpuLevel& levelSize)
    : size(levelSize),
      mix(gpu, 4, size.width, size.height, TextureFilter::Point),
      XY(gpu, 1, size.width, size.height, TextureFilter::Point),
      muX(gpu, size.AlignedCount()),
      muXY(gpu, size.AlignedCount()),
      ssim_map(gpu, size.AlignedCount()),
      mapTexture(gpu, ssim_map.Get(), size.width, size.height, size.alignedWidth) {}

CMSSSIMCUDAMetric::ReducedPictures::ReducedPictures(const Gpu::CheckedGpu& gpu, const Gpu::GpuLevel& size)
    : orig(gpu, 1, size.width, size.height, TextureFilter::Linear),
      proc(gpu, 1, size.width, size.height, TextureFilter::Linear),
      new_orig(gpu, size.AlignedCount()),
      new_proc(gpu, size.AlignedCount()) {}

CMSSSIMCUDAMetric::CMSSSIMCUDAMetric(const Gpu::GpuDevice& device, MetricParameters metricParameters)
    : CudaMetric(device, std::move(metricParameters), "MSSSIM_CUDA", TextureFilter::Linear) {
    id = L"msssim_cuda";
    name = L"MSSSIM (CUDA)";
    infoUrl = InfoUrl(L"/video/quality_measure/info_en.html#msssim");

    Gpu::GpuLevel size = Gpu::MakeGpuLevel(paddedWidth, paddedHeight, double{kWeights[0]});
    levels.emplace_back(gpu, size);
    for (int i = 1; i < Gpu::kLevels; ++i) {
        size = Halved(size, double{kWeights[i]});
        levels.emplace_back(gpu, size);
        reduced.emplace_back(gpu, size);
    }
}

float CMSSSIMCUDAMetric::MeasureFrame(bool) {
    double product = 1;
    const Gpu::TextureArray* finerOrig = &orig;
    const Gpu::TextureArray* finerProc = &proc;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        Level& at = levels[i];
        if (i == 0) {
            SumColumns(at);
        } else {
            ReducedPictures& pictures = reduced[i - 1];
            SumColumnsReducing(at, *finerOrig, *finerProc, pictures);
            finerOrig = &pictures.orig;
            finerProc = &pictures.proc;
        }
        ComputeMap(at);
        const float mean = sums.MeanOfMap(at.size, at.ssim_map.Get(), kDefaultStream);
        product = std::pow(double{mean}, at.size.weight) * product;
    }
    return static_cast<float>(product);
}

void CMSSSIMCUDAMetric::SumColumns(Level& finest) {
    const Gpu::cuda_msssim_columns_first columns = {
        orig.Texture(), proc.Texture(), finest.muX.Get(), finest.muXY.Get(), finest.size.alignedWidth, taps};
    gpu.Check(gpu->Launch(columns, ShapeOf(finest.size), kDefaultStream));
}

void CMSSSIMCUDAMetric::SumColumnsReducing(Level& coarse, const Gpu::TextureArray& finerOrig,
                                           const Gpu::TextureArray& finerProc, ReducedPictures& pictures) {
    const Gpu::GpuLevel& size = coarse.size;
    const Gpu::cuda_msssim_columns columns = {
        finerOrig.Texture(),     finerProc.Texture(),     coarse.muX.Get(),  coarse.muXY.Get(),
        pictures.new_orig.Get(), pictures.new_proc.Get(), size.alignedWidth, taps};
    gpu.Check(gpu->Launch(columns, ShapeOf(size), kDefaultStream));
    pictures.orig.CopyFrom(pictures.new_orig.Get(), size.alignedWidth, size.width, size.height,
                           kDefaultStream);
    pictures.proc.CopyFrom(pictures.new_proc.Get(), size.alignedWidth, size.width, size.height,
                           kDefaultStream);
}

void CMSSSIMCUDAMetric::ComputeMap(Level& at) {
    const Gpu::GpuLevel& size = at.size;
    at.mix.CopyFrom(at.muX.Get(), size.alignedWidth, size.width, size.height, kDefaultStream);
    at.XY.CopyFrom(at.muXY.Get(), size.alignedWidth, size.width, size.height, kDefaultStream);
    const Gpu::cuda_msssim_rows rows = {at.mix.Texture(), at.XY.Texture(), at.ssim_map.Get(),
                                        size.alignedWidth, taps};
    gpu.Check(gpu->Launch(rows, ShapeOf(size), kDefaultStream));
}

void CMSSSIMCUDAMetric::FetchMap() {
    Gpu::cuda_msssim_vis picture = {};
    for (std::size_t i = 0; i < levels.size(); ++i) {
        picture.maps[i] = levels[i].mapTexture.Texture();
        picture.weights[i] = kWeights[i];
    }
    picture.ssim_map = sums.Compact();
    picture.width = level.alignedWidth;
    picture.height = level.alignedHeight;
    gpu.Check(gpu->Launch(picture, ShapeOf(level), kDefaultStream));

    const auto bytes = [](int floats) { return static_cast<std::size_t>(floats) * sizeof(float); };
    gpu.Check(gpu->Memcpy2D(GetMap(ComponentY), bytes(paddedWidth), sums.Compact(), bytes(level.alignedWidth),
                            bytes(paddedWidth), paddedHeight));
}

void CMSSSIMCUDAMetric::Visualize(rkVideoImage& target, int) {
    PaintGrayMap(GetMap(ComponentY), paddedWidth, target);
}

}  // namespace Metric
