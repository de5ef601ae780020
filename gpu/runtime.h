#pragma once

#include <cstddef>

#include "gpu/kernels/host_texture.h"
#include "gpu/kernels/image_kernel.h"
#include "gpu/kernels/reduction.h"
#include "gpu/kernels/texture.h"

namespace Gpu {

/// What a runtime function answers: 0 for success, otherwise a number that `GetErrorString` has a text for.
using Status = int;
constexpr Status kSuccess = 0;

/// A picture in the device's own layout, which textures read, and a queue of work. Known to their runtime
/// only.
struct OpaqueArray;
struct OpaqueStream;
using ArrayHandle = OpaqueArray*;
using StreamHandle = OpaqueStream*;
constexpr StreamHandle kDefaultStream = nullptr;

/// The functions of the GPU runtime that the metrics use, by the names under which it has them. One
/// implementation stands on the CUDA runtime, one does everything on the host; tests put others in between.
///
/// Devices  are numbered from 0. Each thread has a current device, at first device 0, to which its calls
///          go.
/// Streams  work in a stream is done in order. The default stream's work waits for what was given to any
///          stream before, and later work of any stream waits for it.
/// Copies   know by the addresses on which side they lie. "Async" ones may return before they are done.
/// Threads  any.
class GpuRuntime {
public:
    virtual ~GpuRuntime() = default;

    virtual Status GetDeviceCount(int& count) = 0;
    virtual Status GetMultiProcessorCount(int device, int& count) = 0;
    virtual Status SetDevice(int device) = 0;
    /// Loads the kernels for the current device; fails if the program has none for it.
    virtual Status LoadKernels() = 0;
    virtual const char* GetErrorString(Status status) = 0;

    virtual Status Malloc(void*& buffer, std::size_t bytes) = 0;
    virtual Status Free(void* buffer) = 0;
    /// Pinned host memory. `writeCombined`: the host writes fast and reads very slowly.
    virtual Status HostAlloc(void*& block, std::size_t bytes, bool writeCombined) = 0;
    virtual Status FreeHost(void* block) = 0;
    /// Of elements of 1 or 4 floats.
    virtual Status MallocArray(ArrayHandle& array, int channels, int width, int height) = 0;
    virtual Status FreeArray(ArrayHandle array) = 0;

    /// Coordinates in texels.
    virtual Status CreateTexture(Texture& texture, ArrayHandle array, TextureFilter filter) = 0;
    /// Of a float buffer, with normalized coordinates and the filter `Linear`. Rows start at multiples of
    /// 32 bytes.
    virtual Status CreateBufferTexture(Texture& texture, const float* buffer, int width, int height,
                                       std::size_t pitchBytes) = 0;
    virtual Status DestroyTexture(Texture texture) = 0;

    virtual Status Memcpy(void* to, const void* from, std::size_t bytes) = 0;
    virtual Status MemcpyAsync(void* to, const void* from, std::size_t bytes, StreamHandle stream) = 0;
    virtual Status Memcpy2D(void* to, std::size_t toPitchBytes, const void* from, std::size_t fromPitchBytes,
                            std::size_t widthBytes, int height) = 0;
    /// To the array's top left.
    virtual Status Memcpy2DToArrayAsync(ArrayHandle array, const void* from, std::size_t fromPitchBytes,
                                        std::size_t widthBytes, int height, StreamHandle stream) = 0;

    virtual Status StreamCreate(StreamHandle& stream) = 0;
    virtual Status StreamDestroy(StreamHandle stream) = 0;
    virtual Status StreamSynchronize(StreamHandle stream) = 0;

    virtual Status Launch(const ImageKernel& kernel, const LaunchShape& shape, StreamHandle stream) = 0;
    virtual Status LaunchReduction(const Reduction& reduction, StreamHandle stream) = 0;
};

/// The cards of this machine. Null in a build without CUDA.
GpuRuntime* DeviceRuntime();

}  // namespace Gpu
