#include "gpu/host_runtime.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <variant>

#include "kernels/bands.h"
#include "kernels/plane.h"

namespace Gpu {

namespace {

constexpr Status kInvalidValue = 1;
constexpr Status kOutOfMemory = 2;

struct HostArray {
    int channels;
    int width;
    int height;
    std::unique_ptr<std::byte[], Kernels::PlaneDeleter> elements;

    std::size_t PitchBytes() const {
        return static_cast<std::size_t>(channels) * static_cast<std::size_t>(width) * sizeof(float);
    }
};

HostArray* OnHost(ArrayHandle array) {
    return reinterpret_cast<HostArray*>(array);
}

/// The result of make(), or the status that says why there is none.
template <class Result, class Make>
Status Store(Result& result, const Make& make) {
    try {
        result = make();
        return kSuccess;
    } catch (const std::bad_alloc&) {
        return kOutOfMemory;
    }
}

Texture TextureOf(const HostTexture& texture) {
    return {reinterpret_cast<std::uint64_t>(new HostTexture(texture))};
}

void CopyRows(std::byte* to, std::size_t toPitchBytes, const void* from, std::size_t fromPitchBytes,
              std::size_t widthBytes, int height) {
    const auto* source = static_cast<const std::byte*>(from);
    for (int y = 0; y < height; ++y, to += toPitchBytes, source += fromPitchBytes)
        std::memcpy(to, source, widthBytes);
}

}  // namespace

Status HostRuntime::GetDeviceCount(int& count) {
    count = 1;
    return kSuccess;
}

Status HostRuntime::GetMultiProcessorCount(int device, int& count) {
    count = 1;
    return device == 0 ? kSuccess : kInvalidValue;
}

Status HostRuntime::SetDevice(int device) {
    return device == 0 ? kSuccess : kInvalidValue;
}

const char* HostRuntime::GetErrorString(Status status) {
    switch (status) {
        case kSuccess:
            return "no error";
        case kInvalidValue:
            return "invalid argument";
        case kOutOfMemory:
            return "out of memory";
        default:
            return "unrecognized error code";
    }
}

Status HostRuntime::Malloc(void*& buffer, std::size_t bytes) {
    return Store(buffer, [=] { return Kernels::AllocZeroed(bytes); });
}

Status HostRuntime::Free(void* buffer) {
    Kernels::FreePlane(buffer);
    return kSuccess;
}

Status HostRuntime::HostAlloc(void*& block, std::size_t bytes, bool) {
    return HostRuntime::Malloc(block, bytes);
}

Status HostRuntime::FreeHost(void* block) {
    return HostRuntime::Free(block);
}

Status HostRuntime::MallocArray(ArrayHandle& array, int channels, int width, int height) {
    if ((channels != 1 && channels != 4) || width < 1 || height < 1) return kInvalidValue;
    return Store(array, [=] {
        auto made = std::make_unique<HostArray>(HostArray{channels, width, height, nullptr});
        const std::size_t bytes = made->PitchBytes() * static_cast<std::size_t>(height);
        made->elements.reset(static_cast<std::byte*>(Kernels::AllocZeroed(bytes)));
        return reinterpret_cast<ArrayHandle>(made.release());
    });
}

Status HostRuntime::FreeArray(ArrayHandle array) {
    delete OnHost(array);
    return kSuccess;
}

Status HostRuntime::CreateTexture(Texture& texture, ArrayHandle array, TextureFilter filter) {
    const HostArray& source = *OnHost(array);
    return Store(texture, [&] {
        return TextureOf(
            {source.elements.get(), source.PitchBytes(), source.width, source.height, filter, false});
    });
}

Status HostRuntime::CreateBufferTexture(Texture& texture, const float* buffer, int width, int height,
                                        std::size_t pitchBytes) {
    if (pitchBytes % 32 != 0) return kInvalidValue;
    const auto* texels = reinterpret_cast<const std::byte*>(buffer);
    return Store(texture, [=] {
        return TextureOf({texels, pitchBytes, width, height, TextureFilter::Linear, true});
    });
}

Status HostRuntime::DestroyTexture(Texture texture) {
    delete reinterpret_cast<HostTexture*>(texture.handle);
    return kSuccess;
}

Status HostRuntime::Memcpy(void* to, const void* from, std::size_t bytes) {
    std::memcpy(to, from, bytes);
    return kSuccess;
}

Status HostRuntime::MemcpyAsync(void* to, const void* from, std::size_t bytes, StreamHandle) {
    return HostRuntime::Memcpy(to, from, bytes);
}

Status HostRuntime::Memcpy2D(void* to, std::size_t toPitchBytes, const void* from, std::size_t fromPitchBytes,
                             std::size_t widthBytes, int height) {
    if (widthBytes > toPitchBytes || widthBytes > fromPitchBytes) return kInvalidValue;
    CopyRows(static_cast<std::byte*>(to), toPitchBytes, from, fromPitchBytes, widthBytes, height);
    return kSuccess;
}

Status HostRuntime::Memcpy2DToArrayAsync(ArrayHandle array, const void* from, std::size_t fromPitchBytes,
                                         std::size_t widthBytes, int height, StreamHandle) {
    const HostArray& target = *OnHost(array);
    if (widthBytes > target.PitchBytes() || widthBytes > fromPitchBytes || height > target.height)
        return kInvalidValue;
    CopyRows(target.elements.get(), target.PitchBytes(), from, fromPitchBytes, widthBytes, height);
    return kSuccess;
}

Status HostRuntime::StreamCreate(StreamHandle& stream) {
    stream = kDefaultStream;
    return kSuccess;
}

Status HostRuntime::Launch(const ImageKernel& kernel, const LaunchShape& shape, StreamHandle) {
    std::visit(
        [&](const auto& compute) {
            Kernels::ForEachRow(shape.width, shape.height, [&](int y) {
                for (int x = 0; x < shape.width; ++x) compute(x, y);
            });
        },
        kernel);
    return kSuccess;
}

Status HostRuntime::LaunchReduction(const Reduction& reduction, StreamHandle) {
    ChooseReduction(reduction, [&](auto blockSize, auto isPow2) {
        float shared[blockSize()];
        for (int block = 0; block < reduction.blocks; ++block) {
            reduce6<float, blockSize(), isPow2()>(
                reduction.g_idata, reduction.g_odata, reduction.n,
                {static_cast<unsigned>(block), static_cast<unsigned>(reduction.blocks)}, shared);
        }
    });
    return kSuccess;
}

}  // namespace Gpu
