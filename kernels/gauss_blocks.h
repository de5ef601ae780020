#pragma once

#include "kernels/bands.h"
#include "kernels/gauss_ssim.h"
#include "kernels/gauss_taps.h"
#include "kernels/reductions.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace Kernels {

/// `GaussSSIM` works on blocks of so many pixels a side: as many as the longest vector has lanes.
inline constexpr int kGaussBlock = 16;

/// What is filtered: the two pictures, their squares and their product.
inline constexpr int kGaussQuantities = 5;

inline constexpr int kGaussReach = kGaussWindow / 2;

/// Numbers for a block, lines of 16.
using GaussLines = float[kGaussBlock][kGaussBlock];

/// The sums of a filter that walks over lines and has not yet seen all lines that they weigh.
using UnfinishedSums = float[kGaussWindow - 1][kGaussBlock];

/// What a thread works with. All of it stays in the level 1 cache.
struct alignas(64) GaussWork {
    UnfinishedSums across[kGaussQuantities];  ///< of the 16 rows that it walks along
    GaussLines quantities[kGaussQuantities];  ///< of a block, a line a column
    GaussLines columns;                       ///< a quantity filtered across, a line a column
    GaussLines rows;                          ///< the same, a line a row
    GaussLines moments[kGaussQuantities];     ///< filtered both ways, a line a row
    GaussLines rim[2];                        ///< blocks of the pictures that reach over the edge
    float taps[kGaussWindow];
};

/// The pixels that a thread takes at least: in pictures of any size 64 threads find enough, and as each has
/// sums for a whole row of blocks, more would need more memory than the pictures.
inline std::int64_t GaussPixelsPerThread(int width, int height) {
    constexpr int kMostThreads = 64;
    return std::max(kPixelsPerThread, (std::int64_t{width} * height + kMostThreads - 1) / kMostThreads);
}

/// The memory behind `scratch` of `GaussSSIM`.
class GaussSSIMScratch {
public:
    GaussSSIMScratch(void* scratch, int width, int height)
        : memory(static_cast<std::byte*>(scratch)), bytesOfTeam(BytesOfTeam(width, height)), columns(width) {}

    GaussWork& WorkOf(int thread) const {
        return *reinterpret_cast<GaussWork*>(memory +
                                             BytesOfThread(columns) * static_cast<std::size_t>(thread));
    }

    /// The thread's sums down the columns, for each block of a row and quantity.
    UnfinishedSums* DownOf(int thread) const {
        return reinterpret_cast<UnfinishedSums*>(&WorkOf(thread) + 1);
    }

    /// Where `kSumLanes` sums over row y of the map have their place.
    double* RowSums(int y) const {
        return reinterpret_cast<double*>(memory + bytesOfTeam) + std::ptrdiff_t{y} * kSumLanes;
    }

    static std::size_t Bytes(int width, int height) {
        return BytesOfTeam(width, height) + sizeof(double) * kSumLanes * static_cast<std::size_t>(height);
    }

private:
    static std::size_t BytesOfThread(int width) {
        const int blocks = (width + kGaussBlock - 1) / kGaussBlock;
        return sizeof(GaussWork) +
               sizeof(UnfinishedSums) * static_cast<std::size_t>(blocks) * kGaussQuantities;
    }
    static std::size_t BytesOfTeam(int width, int height) {
        const int threads = MaxTeamSize(width, height, GaussPixelsPerThread(width, height));
        return BytesOfThread(width) * static_cast<std::size_t>(threads);
    }

    std::byte* memory;
    std::size_t bytesOfTeam;
    int columns;
};

}  // namespace Kernels
