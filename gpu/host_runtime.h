#pragma once

#include "gpu/runtime.h"

namespace Gpu {

/// One device that is the host itself: its memory is the host's, every call is done when it returns, a team
/// of threads shares the rows of a kernel. For machines without a card and for tests; many times slower
/// than a card.
///
/// Answers 1 for sizes that a card would refuse and 2 when memory is out, as the CUDA runtime numbers them.
class HostRuntime : public GpuRuntime {
public:
    Status GetDeviceCount(int& count) override;
    Status GetMultiProcessorCount(int device, int& count) override;
    Status SetDevice(int device) override;
    Status LoadKernels() override { return kSuccess; }
    const char* GetErrorString(Status status) override;

    Status Malloc(void*& buffer, std::size_t bytes) override;
    Status Free(void* buffer) override;
    Status HostAlloc(void*& block, std::size_t bytes, bool writeCombined) override;
    Status FreeHost(void* block) override;
    Status MallocArray(ArrayHandle& array, int channels, int width, int height) override;
    Status FreeArray(ArrayHandle array) override;

    Status CreateTexture(Texture& texture, ArrayHandle array, TextureFilter filter) override;
    Status CreateBufferTexture(Texture& texture, const float* buffer, int width, int height,
                               std::size_t pitchBytes) override;
    Status DestroyTexture(Texture texture) override;

    Status Memcpy(void* to, const void* from, std::size_t bytes) override;
    Status MemcpyAsync(void* to, const void* from, std::size_t bytes, StreamHandle stream) override;
    Status Memcpy2D(void* to, std::size_t toPitchBytes, const void* from, std::size_t fromPitchBytes,
                    std::size_t widthBytes, int height) override;
    Status Memcpy2DToArrayAsync(ArrayHandle array, const void* from, std::size_t fromPitchBytes,
                                std::size_t widthBytes, int height, StreamHandle stream) override;

    Status StreamCreate(StreamHandle& stream) override;
    Status StreamDestroy(StreamHandle) override { return kSuccess; }
    Status StreamSynchronize(StreamHandle) override { return kSuccess; }

    Status Launch(const ImageKernel& kernel, const LaunchShape& shape, StreamHandle stream) override;
    Status LaunchReduction(const Reduction& reduction, StreamHandle stream) override;
};

}  // namespace Gpu
