/// Pictures in motion: the search for it, and similarity over time.

#include "bench/kept_for.h"
#include "bench/kernels_bench.h"
#include "bench/noise.h"
#include "kernels/block_difference.h"
#include "kernels/frame_tiles.h"
#include "kernels/half_pixels.h"
#include "kernels/space_time_ssim.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

using namespace Kernels;
using Planes = KernelPlanes;

// Every block of the picture against the one of another picture that lies a bit aside, or between two.
template <int kSide, bool kBetween>
void CompareBlocks(const Planes& p) {
    int sum = 0;
    for (int y = 0; y + kSide <= p.height; y += kSide) {
        for (int x = 0; x + kSide <= p.width; x += kSide) {
            const std::uint8_t* const other =
                p.withMargins.get() + p.inside + std::ptrdiff_t{y + 1} * p.marginStride + x + 3;
            sum += BlockDifference(p.bytes[1].get() + std::ptrdiff_t{y} * p.width + x, p.width, other,
                                   kBetween ? other + 1 : nullptr, p.marginStride, kSide);
        }
    }
    benchmark::DoNotOptimize(sum);
}

void MakeHalfPixels(const Planes& p) {
    HalfPixels(p.withMargins.get() + p.inside, p.marginStride, p.width, p.height,
               {p.marginResults[0].get() + p.inside, p.marginResults[1].get() + p.inside,
                p.marginResults[2].get() + p.inside});
}

// Two sequences, and what their comparison needs.
struct Sequences {
    Sequences(int width, int height)
        : layout{width, height, kWindowFrames},
          first(static_cast<std::uint8_t*>(AllocZeroed(layout.Bytes()))),
          second(static_cast<std::uint8_t*>(AllocZeroed(layout.Bytes()))),
          lines(static_cast<std::size_t>(width / kLineCell) *
                static_cast<std::size_t>((height + kLineCell - 1) / kLineCell)),
          scratch(static_cast<std::uint8_t*>(AllocZeroed(GetSpaceTimeScratchSize(width, height)))) {
        FillWithNoise(first.get(), layout.Bytes(), 1);
        FillWithNoise(second.get(), layout.Bytes(), 2);
    }

    FrameTiles layout;
    BytePlane first;
    BytePlane second;
    std::vector<LineSet> lines;
    BytePlane scratch;
};

void Store(const Planes& p) {
    static int slot = 0;
    const Sequences& sequences = KeptFor<Sequences>(p.width, p.height);
    slot = (slot + 1) % kWindowFrames;
    StoreFrame(p.first.get(), p.stride, sequences.layout, slot, sequences.first.get());
}

template <LineSet kLines>
void CompareOverTime(const Planes& p) {
    Sequences& sequences = KeptFor<Sequences>(p.width, p.height);
    if (sequences.lines.front() != kLines) sequences.lines.assign(sequences.lines.size(), kLines);
    SpaceTimeSSIM({sequences.layout, sequences.first.get(), sequences.second.get(), 0}, 6.5025, 58.5225,
                  {p.results[0].get(), p.width, p.height, sequences.lines.data()}, sequences.scratch.get());
}

constexpr double kDifference = 3;  // a difference, its absolute value, their sum
constexpr double kMean = 3;        // two sums and the half
constexpr double kTaps = 6 + 5;    // products and sums of six
constexpr double kRounded = 4;     // a sum, a quotient, two limits

// 33 frames of both and the map.
constexpr double kBytesOverTime = 2 * kWindowFrames + 4;
// Of five quantities, three of them products, the sums over time; for each line those over space, the value as
// of any map, and its limits; and the mean of the lines.
constexpr double OperationsOverTime(int lines) {
    return kWindowFrames * (3 + 5) + (kWindowFrames - 1) * 5 +
           lines * (kWindowPixels * 5 + (kWindowPixels - 1) * 5 + 17 + 2) + lines;
}

constexpr KernelCase kKernels[] = {
    {"BlockDifference of 16 by 16", 2, kDifference, CompareBlocks<16, false>, false},
    {"BlockDifference of 8 by 8", 2, kDifference, CompareBlocks<8, false>, false},
    {"BlockDifference of 4 by 4", 2, kDifference, CompareBlocks<4, false>, false},
    {"BlockDifference of 16 by 16 between two", 3, kDifference + kMean, CompareBlocks<16, true>, false},
    {"BlockDifference of 8 by 8 between two", 3, kDifference + kMean, CompareBlocks<8, true>, false},
    {"BlockDifference of 4 by 4 between two", 3, kDifference + kMean, CompareBlocks<4, true>, false},
    {"HalfPixels", 1 + 3, 3 * (kTaps + kRounded), MakeHalfPixels},
    {"StoreFrame", 4 + 1, 2, Store},
    {"SpaceTimeSSIM, horizontal", kBytesOverTime, OperationsOverTime(1),
     CompareOverTime<LineSet::Horizontal>},
    {"SpaceTimeSSIM, vertical", kBytesOverTime, OperationsOverTime(1), CompareOverTime<LineSet::Vertical>},
    {"SpaceTimeSSIM, cross", kBytesOverTime, OperationsOverTime(2), CompareOverTime<LineSet::Cross>},
    {"SpaceTimeSSIM, star", kBytesOverTime, OperationsOverTime(4), CompareOverTime<LineSet::Star>},
};

}  // namespace

std::span<const KernelCase> MotionKernels() {
    return kKernels;
}
