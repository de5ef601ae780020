#include "gpu/level.h"

#include <algorithm>
#include <limits>
#include <new>

namespace Gpu {

namespace {

constexpr int kAlignment = 16;
constexpr int kReduceThreads = 256;

int Aligned(int size) {
    return (size + kAlignment - 1) & ~(kAlignment - 1);
}

}  // namespace

GpuLevel MakeGpuLevel(int width, int height, double weight) {
    if (width > std::numeric_limits<int>::max() / height) throw std::bad_alloc();
    const int pixelCount = width * height;
    const ReduceShape shape = ComputeReduceShape(pixelCount);
    return {width, height, Aligned(width), Aligned(height), pixelCount, shape.threads, shape.blocks, weight};
}

ReduceShape ComputeReduceShape(int n) {
    const bool isSmall = n < 2 * kReduceThreads;
    const int threads =
        isSmall ? static_cast<int>(NextPowerOfTwo((static_cast<unsigned>(n) + 1) / 2)) : kReduceThreads;
    const int blocks = (n - 1) / (2 * threads) + 1;
    return {threads, std::min(blocks, kMostReduceBlocks)};
}

unsigned NextPowerOfTwo(unsigned x) {
    --x;
    for (const unsigned shift : {1u, 2u, 4u, 8u, 16u}) x |= x >> shift;
    return x + 1;
}

}  // namespace Gpu
