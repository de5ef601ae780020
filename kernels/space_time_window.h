#pragma once

#include "kernels/space_time_ssim.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace Kernels {

/// Pixels of a line on each side of its middle.
inline constexpr int kSpaceReach = kWindowPixels / 2;

/// The weights of a window, by the distance from its middle, and where its frames lie in a tile, in bytes.
struct SpaceTimeWindow {
    static constexpr int kTimeReach = kWindowFrames / 2;

    explicit SpaceTimeWindow(int oldestSlot) {
        FillGauss(timeWeights, kTimeReach);
        FillGauss(spaceWeights, kSpaceReach);
        for (int t = 0; t <= kTimeReach; ++t) {
            before[t] = OffsetOf(oldestSlot + kTimeReach - t);
            behind[t] = OffsetOf(oldestSlot + kTimeReach + t);
        }
    }

    double timeWeights[kTimeReach + 1];
    double spaceWeights[kSpaceReach + 1];
    std::ptrdiff_t before[kTimeReach + 1];  // the two frames at the same distance
    std::ptrdiff_t behind[kTimeReach + 1];

private:
    static std::ptrdiff_t OffsetOf(int slot) {
        return std::ptrdiff_t{slot % kWindowFrames} * FrameTiles::kTileWidth;
    }

    // A Gaussian of sigma 1.5 from its middle to `reach`, the sum over both sides being 1.
    static void FillGauss(double* weights, int reach) {
        double sum = 0;
        for (int i = reach; i >= 0; --i) {
            weights[i] = std::exp(-i * i / 4.5);
            sum += weights[i] * (i == 0 ? 1 : 2);
        }
        for (int i = 0; i <= reach; ++i) weights[i] /= sum;
    }
};

/// The sums over time that a row of a strip of the map sees: the strip's columns and kMargin more on each
/// side, for its own row and those of the picture that a line reaches. A thread keeps them in a ring.
class StripRows {
public:
    static constexpr int kSums = 5;     // of x, y, xx, yy, xy
    static constexpr int kWidth = 512;  // so that a ring stays in the level 2 cache
    static constexpr int kMargin = 8;
    static constexpr int kStride = kWidth + 2 * kMargin;  // from one sum's row to the next one's

    StripRows(double* ring, int y, int height) : last(std::min(y + kSpaceReach, height - 1)) {
        for (int offset = -kSpaceReach; offset <= kSpaceReach; ++offset)
            rows[static_cast<std::size_t>(offset + kSpaceReach)] =
                InRing(ring, std::clamp(y + offset, 0, height - 1));
    }

    /// The row that a line sees `offset` rows further down.
    const double* At(int offset) const { return rows[static_cast<std::size_t>(offset + kSpaceReach)]; }
    /// The lowest one, in the picture.
    int Last() const { return last; }

    /// Where row y of the picture has its place: the strip's first column of the first sum.
    static double* InRing(double* ring, int y) {
        return ring + y % kWindowPixels * kSums * kStride + kMargin;
    }
    static double* RingOf(void* scratch, int thread) {
        return static_cast<double*>(scratch) + std::ptrdiff_t{thread} * kRingLength;
    }
    static constexpr std::size_t BytesOfRing() { return kRingLength * sizeof(double); }

private:
    static constexpr int kRingLength = kWindowPixels * kSums * kStride;

    std::array<const double*, kWindowPixels> rows;
    int last;
};

}  // namespace Kernels
