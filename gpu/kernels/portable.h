#pragma once

#include <cmath>
#include <cstddef>

// What the kernels need so that they are device code for nvcc and plain C++ for every other compiler.
//
// Host and device agree bit for bit: each operator rounds its own result, to nearest, and only what is
// written as fused is fused. The build sees to that with -fmad=false -ftz=false -prec-div=true
// -prec-sqrt=true for the device and -ffp-contract=off for the host. The exceptions are `Power` and reads
// between texels.
#ifdef __CUDACC__
#define GPU_FUNCTION __host__ __device__
#else
#define GPU_FUNCTION
#endif
#ifdef __CUDA_ARCH__
#define GPU_UNROLL _Pragma("unroll")
#else
#define GPU_UNROLL
#endif

namespace Gpu {

/// Four floats that a texture reads at once.
struct alignas(16) Float4 {
    float x, y, z, w;
};

/// a * b + c, rounded once.
GPU_FUNCTION inline float FusedMultiplyAdd(float a, float b, float c) {
#ifdef __CUDA_ARCH__
    return __fmaf_rn(a, b, c);
#else
    return std::fma(a, b, c);
#endif
}

/// `base` to the power `exponent` in single precision; not a number for a negative base. The last digits
/// are the platform's.
GPU_FUNCTION inline float Power(float base, float exponent) {
#ifdef __CUDA_ARCH__
    return powf(base, exponent);
#else
    return std::pow(base, exponent);
#endif
}

/// Where the element (x, y) of a buffer lies whose rows are `rowStep` elements apart.
GPU_FUNCTION inline std::size_t ElementIndex(int x, int y, int rowStep) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(rowStep) + static_cast<std::size_t>(x);
}

}  // namespace Gpu
