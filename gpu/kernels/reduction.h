#pragma once

#include <type_traits>

#include "gpu/kernels/portable.h"

namespace Gpu {

/// One block of a launch: on a card the one that the calling thread belongs to, on the host all its threads
/// in turn.
struct ThreadBlock {
    unsigned index;  // of the block in the grid
    unsigned count;  // blocks of the grid

    /// Calls work(thread) for the block's threads below `threads`, and goes on when all have done it.
    template <class Work>
    GPU_FUNCTION static void ForThreads(unsigned threads, const Work& work) {
#ifdef __CUDA_ARCH__
        if (threadIdx.x < threads) work(threadIdx.x);
        if (threads > 32) {
            __syncthreads();
        } else {
            __syncwarp();  // all of them are in the first warp, and so are those of the steps that follow
        }
#else
        for (unsigned thread = 0; thread < threads; ++thread) work(thread);
#endif
    }
};

/// Adds up the `n` elements of `g_idata`, one sum a block of `blockSize` threads, which go to `g_odata`.
/// Each thread adds two elements in each step; then the threads' sums are added in a tree. `shared` has
/// room for the block's threads. The order of the additions belongs to the measures.
///
/// `nIsPow2`: n is a power of two from 2 on, so the second element is always there.
template <class T, unsigned blockSize, bool nIsPow2>
GPU_FUNCTION void reduce6(const T* g_idata, T* g_odata, unsigned n, ThreadBlock block, T* shared) {
    block.ForThreads(blockSize, [=](unsigned thread) {
        T sum = 0;
        for (unsigned i = block.index * 2 * blockSize + thread; i < n; i += 2 * blockSize * block.count) {
            sum += g_idata[i];
            if (nIsPow2 || i + blockSize < n) sum += g_idata[i + blockSize];
        }
        shared[thread] = sum;
    });
    GPU_UNROLL
    for (unsigned distance = blockSize / 2; distance > 0; distance /= 2)
        block.ForThreads(distance, [=](unsigned thread) { shared[thread] += shared[thread + distance]; });
    block.ForThreads(1, [=](unsigned) { g_odata[block.index] = shared[0]; });
}

/// What a reduction of floats is launched with.
struct Reduction {
    const float* g_idata;
    float* g_odata;
    unsigned n;
    int threads;  // a block
    int blocks;
};

/// Calls run(blockSize, nIsPow2) with the compile-time values of the kernel for `reduction`,
/// std::integral_constants. Does nothing for a number of threads that there is no kernel for.
template <class Run>
void ChooseReduction(const Reduction& reduction, const Run& run) {
    // With n = 1 there is no second element although 1 is a power of two.
    const bool isPow2 = reduction.n > 1 && (reduction.n & (reduction.n - 1)) == 0;
    const auto choose = [&](auto blockSize) {
        if (isPow2) {
            run(blockSize, std::true_type{});
        } else {
            run(blockSize, std::false_type{});
        }
    };
    switch (reduction.threads) {
        case 512:
            return choose(std::integral_constant<unsigned, 512>{});
        case 256:
            return choose(std::integral_constant<unsigned, 256>{});
        case 128:
            return choose(std::integral_constant<unsigned, 128>{});
        case 64:
            return choose(std::integral_constant<unsigned, 64>{});
        case 32:
            return choose(std::integral_constant<unsigned, 32>{});
        case 16:
            return choose(std::integral_constant<unsigned, 16>{});
        case 8:
            return choose(std::integral_constant<unsigned, 8>{});
        case 4:
            return choose(std::integral_constant<unsigned, 4>{});
        case 2:
            return choose(std::integral_constant<unsigned, 2>{});
        case 1:
            return choose(std::integral_constant<unsigned, 1>{});
        default:
            return;
    }
}

}  // namespace Gpu
