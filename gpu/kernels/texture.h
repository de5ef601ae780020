#pragma once

#include <cstdint>

#include "gpu/kernels/host_texture.h"
#include "gpu/kernels/portable.h"

namespace Gpu {

/// A picture that kernels read by coordinates, see `HostTexture`: on a card the runtime's texture object,
/// on the host the address of a `HostTexture`. Made and given back by the runtime that the kernel runs on.
struct Texture {
    std::uint64_t handle = 0;
};

inline const HostTexture& OnHost(Texture texture) {
    return *reinterpret_cast<const HostTexture*>(texture.handle);
}

GPU_FUNCTION inline float ReadFloat(Texture texture, float x, float y) {
#ifdef __CUDA_ARCH__
    return tex2D<float>(texture.handle, x, y);
#else
    return OnHost(texture).ReadFloat(x, y);
#endif
}

/// Of a texture with the filter `Point`.
GPU_FUNCTION inline Float4 ReadFloat4(Texture texture, float x, float y) {
#ifdef __CUDA_ARCH__
    const float4 texel = tex2D<float4>(texture.handle, x, y);
    return {texel.x, texel.y, texel.z, texel.w};
#else
    return OnHost(texture).ReadNearest<Float4>(x, y);
#endif
}

}  // namespace Gpu
