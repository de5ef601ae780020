#pragma once

#include <cstddef>

namespace Gpu {

/// The geometry of one picture size. Buffers of a level have rows of `alignedWidth` elements and
/// `alignedHeight` rows, so that blocks of 16 by 16 threads cover them exactly.
struct GpuLevel {
    int width = 0;
    int height = 0;
    int alignedWidth = 0;  ///< the next multiple of 16
    int alignedHeight = 0;
    int pixelCount = 0;     ///< width times height
    int reduceThreads = 0;  ///< see `ComputeReduceShape`
    int reduceBlocks = 0;
    double weight = 1;  ///< the level's exponent in a product of levels

    std::size_t AlignedCount() const {
        return static_cast<std::size_t>(alignedWidth) * static_cast<std::size_t>(alignedHeight);
    }
};

GpuLevel MakeGpuLevel(int width, int height, double weight = 1);

/// Threads a block and blocks for the sum of `n` values, 1 or more.
struct ReduceShape {
    int threads;
    int blocks;
};

/// A thread adds two values a step: 256 threads and as many blocks as it takes, at most 64; for less than
/// 512 values one block of half as many threads, a power of two.
ReduceShape ComputeReduceShape(int n);

constexpr int kMostReduceBlocks = 64;

/// The smallest power of two that isn't below `x`, which is 1 or more.
unsigned NextPowerOfTwo(unsigned x);

}  // namespace Gpu
