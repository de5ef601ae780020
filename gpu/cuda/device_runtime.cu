#include "gpu/runtime.h"

#include <cuda_runtime.h>

#include <variant>

// The GPU runtime on CUDA's. The program is linked with the static CUDA runtime and starts on machines that
// have no driver: there the number of devices can't be had, and nothing else is asked.

namespace Gpu {

namespace {

static_assert(cudaSuccess == kSuccess);

template <class Kernel>
__global__ void RunImage(Kernel kernel, int width, int height) {
    const int x = static_cast<int>(blockIdx.x * blockDim.x + threadIdx.x);
    const int y = static_cast<int>(blockIdx.y * blockDim.y + threadIdx.y);
    if (x < width && y < height) kernel(x, y);
}

template <unsigned blockSize, bool nIsPow2>
__global__ void RunReduction(const float* g_idata, float* g_odata, unsigned n) {
    __shared__ float shared[blockSize];
    reduce6<float, blockSize, nIsPow2>(g_idata, g_odata, n, {blockIdx.x, gridDim.x}, shared);
}

unsigned Blocks(int size, int blockSize) {
    return static_cast<unsigned>((size + blockSize - 1) / blockSize);
}

cudaArray_t OnDevice(ArrayHandle array) {
    return reinterpret_cast<cudaArray_t>(array);
}

cudaStream_t OnDevice(StreamHandle stream) {
    return reinterpret_cast<cudaStream_t>(stream);
}

Status Create(Texture& texture, const cudaResourceDesc& resource, TextureFilter filter, bool normalized) {
    cudaTextureDesc description = {};
    description.addressMode[0] = description.addressMode[1] = cudaAddressModeClamp;
    description.filterMode = filter == TextureFilter::Point ? cudaFilterModePoint : cudaFilterModeLinear;
    description.readMode = cudaReadModeElementType;
    description.normalizedCoords = normalized;
    cudaTextureObject_t object = 0;
    const Status status = cudaCreateTextureObject(&object, &resource, &description, nullptr);
    texture.handle = object;
    return status;
}

class CudaRuntime : public GpuRuntime {
public:
    Status GetDeviceCount(int& count) override { return cudaGetDeviceCount(&count); }

    Status GetMultiProcessorCount(int device, int& count) override {
        return cudaDeviceGetAttribute(&count, cudaDevAttrMultiProcessorCount, device);
    }

    Status SetDevice(int device) override { return cudaSetDevice(device); }

    Status LoadKernels() override {
        cudaFuncAttributes attributes;
        return cudaFuncGetAttributes(&attributes, RunReduction<256, false>);
    }

    const char* GetErrorString(Status status) override {
        return cudaGetErrorString(static_cast<cudaError_t>(status));
    }

    Status Malloc(void*& buffer, std::size_t bytes) override { return cudaMalloc(&buffer, bytes); }

    Status Free(void* buffer) override { return cudaFree(buffer); }

    Status HostAlloc(void*& block, std::size_t bytes, bool writeCombined) override {
        return cudaHostAlloc(&block, bytes,
                             writeCombined ? cudaHostAllocWriteCombined : cudaHostAllocDefault);
    }

    Status FreeHost(void* block) override { return cudaFreeHost(block); }

    Status MallocArray(ArrayHandle& array, int channels, int width, int height) override {
        const int others = channels == 4 ? 32 : 0;
        const auto element = cudaCreateChannelDesc(32, others, others, others, cudaChannelFormatKindFloat);
        cudaArray_t made = nullptr;
        const Status status = cudaMallocArray(&made, &element, static_cast<std::size_t>(width),
                                              static_cast<std::size_t>(height));
        array = reinterpret_cast<ArrayHandle>(made);
        return status;
    }

    Status FreeArray(ArrayHandle array) override { return cudaFreeArray(OnDevice(array)); }

    Status CreateTexture(Texture& texture, ArrayHandle array, TextureFilter filter) override {
        cudaResourceDesc resource = {};
        resource.resType = cudaResourceTypeArray;
        resource.res.array.array = OnDevice(array);
        return Create(texture, resource, filter, false);
    }

    Status CreateBufferTexture(Texture& texture, const float* buffer, int width, int height,
                               std::size_t pitchBytes) override {
        cudaResourceDesc resource = {};
        resource.resType = cudaResourceTypePitch2D;
        resource.res.pitch2D.devPtr = const_cast<float*>(buffer);
        resource.res.pitch2D.desc = cudaCreateChannelDesc<float>();
        resource.res.pitch2D.width = static_cast<std::size_t>(width);
        resource.res.pitch2D.height = static_cast<std::size_t>(height);
        resource.res.pitch2D.pitchInBytes = pitchBytes;
        return Create(texture, resource, TextureFilter::Linear, true);
    }

    Status DestroyTexture(Texture texture) override { return cudaDestroyTextureObject(texture.handle); }

    Status Memcpy(void* to, const void* from, std::size_t bytes) override {
        return cudaMemcpy(to, from, bytes, cudaMemcpyDefault);
    }

    Status MemcpyAsync(void* to, const void* from, std::size_t bytes, StreamHandle stream) override {
        return cudaMemcpyAsync(to, from, bytes, cudaMemcpyDefault, OnDevice(stream));
    }

    Status Memcpy2D(void* to, std::size_t toPitchBytes, const void* from, std::size_t fromPitchBytes,
                    std::size_t widthBytes, int height) override {
        return cudaMemcpy2D(to, toPitchBytes, from, fromPitchBytes, widthBytes,
                            static_cast<std::size_t>(height), cudaMemcpyDefault);
    }

    Status Memcpy2DToArrayAsync(ArrayHandle array, const void* from, std::size_t fromPitchBytes,
                                std::size_t widthBytes, int height, StreamHandle stream) override {
        return cudaMemcpy2DToArrayAsync(OnDevice(array), 0, 0, from, fromPitchBytes, widthBytes,
                                        static_cast<std::size_t>(height), cudaMemcpyDefault,
                                        OnDevice(stream));
    }

    Status StreamCreate(StreamHandle& stream) override {
        cudaStream_t made = nullptr;
        const Status status = cudaStreamCreate(&made);
        stream = reinterpret_cast<StreamHandle>(made);
        return status;
    }

    Status StreamDestroy(StreamHandle stream) override { return cudaStreamDestroy(OnDevice(stream)); }

    Status StreamSynchronize(StreamHandle stream) override { return cudaStreamSynchronize(OnDevice(stream)); }

    Status Launch(const ImageKernel& kernel, const LaunchShape& shape, StreamHandle stream) override {
        const dim3 block(static_cast<unsigned>(shape.blockWidth), static_cast<unsigned>(shape.blockHeight));
        const dim3 grid(Blocks(shape.width, shape.blockWidth), Blocks(shape.height, shape.blockHeight));
        return std::visit(
            [&](auto compute) -> Status {
                int width = shape.width;
                int height = shape.height;
                void* arguments[] = {&compute, &width, &height};
                return cudaLaunchKernel(RunImage<decltype(compute)>, grid, block, arguments, 0,
                                        OnDevice(stream));
            },
            kernel);
    }

    Status LaunchReduction(const Reduction& reduction, StreamHandle stream) override {
        Status status = kSuccess;
        ChooseReduction(reduction, [&](auto blockSize, auto isPow2) {
            Reduction copy = reduction;
            void* arguments[] = {&copy.g_idata, &copy.g_odata, &copy.n};
            status = cudaLaunchKernel(RunReduction<blockSize(), isPow2()>,
                                      dim3(static_cast<unsigned>(copy.blocks)), dim3(blockSize()), arguments,
                                      0, OnDevice(stream));
        });
        return status;
    }
};

}  // namespace

GpuRuntime* DeviceRuntime() {
    static CudaRuntime runtime;
    return &runtime;
}

}  // namespace Gpu
