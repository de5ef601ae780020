#include "gpu/reduction.h"

namespace Gpu {

MapSum::MapSum(const CheckedGpu& checkedGpu, const GpuLevel& level, int line)
    : gpu(checkedGpu),
      compact(gpu, level.AlignedCount(), line),
      blockSums(gpu, kMostReduceBlocks, line),
      hostSums(gpu, kMostReduceBlocks, PinnedFor::Results, line) {}

float MapSum::SumOfMap(const GpuLevel& level, const float* map, StreamHandle stream, int line) {
    if (level.width != level.alignedWidth) {
        const std::size_t rowBytes = static_cast<std::size_t>(level.width) * sizeof(float);
        const std::size_t alignedBytes = static_cast<std::size_t>(level.alignedWidth) * sizeof(float);
        gpu.Check(gpu->Memcpy2D(compact.Get(), rowBytes, map, alignedBytes, rowBytes, level.height), line);
        map = compact.Get();
    }
    return SumOnGpu(level.pixelCount, level.reduceThreads, level.reduceBlocks, map, stream, line);
}

float MapSum::MeanOfMap(const GpuLevel& level, const float* map, StreamHandle stream, int line) {
    return static_cast<float>(double{SumOfMap(level, map, stream, line)} / level.pixelCount);
}

float MapSum::SumOnGpu(int n, int threads, int blocks, const float* map, StreamHandle stream, int line) {
    ReduceBlocks(n, threads, blocks, map, stream, line);
    const std::size_t bytes = static_cast<std::size_t>(blocks) * sizeof(float);
    gpu.CheckNoSync(gpu->Memcpy(hostSums.Get(), blockSums.Get(), bytes), line);
    float sum = 0;
    for (int block = 0; block < blocks; ++block) sum += hostSums.Get()[block];
    return sum;
}

void MapSum::ReduceBlocks(int n, int threads, int blocks, const float* map, StreamHandle stream, int line) {
    gpu.Check(gpu->LaunchReduction({map, blockSums.Get(), static_cast<unsigned>(n), threads, blocks}, stream),
              line);
}

}  // namespace Gpu
