#pragma once

#include "kernels/bands.h"
#include "kernels/gauss_ssim.h"
#include "kernels/gauss_taps.h"
#include "kernels/reductions.h"

#include <cstddef>

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
               sizeof(UnfinishedSums) * static_cast<std::size_t>(blocks * kGaussQuantities);
    }
    static std::size_t BytesOfTeam(int width, int height) {
        return BytesOfThread(width) * static_cast<std::size_t>(MaxTeamSize(width, height));
    }

    std::byte* memory;
    std::size_t bytesOfTeam;
    int columns;
};

}  // namespace Kernels
