/// Structural similarity of two pictures.

#include "bench/kernels_bench.h"
#include "kernels/flat_ssim.h"
#include "kernels/flat_walk.h"
#include "kernels/gauss_ssim.h"
#include "kernels/ssim_map.h"

#include <benchmark/benchmark.h>

namespace {

using namespace Kernels;
using Planes = KernelPlanes;

constexpr float kC1 = 6.5025f;
constexpr float kC2 = 58.5225f;
constexpr float kFlatC1 = 4096 * kC1;
constexpr float kFlatC2 = 4096 * kC2;

// The operations of a pixel. The map of five means:
// 2 mx my + c1 and 2 (mxy - mx my) + c2, mx^2 + my^2 + c1 and mxx - mx^2 + myy - my^2 + c2, the products of
// either two, the quotient.
constexpr double kMap = 3 + 3 + 4 + 4 + 2 + 1;
constexpr double kContrastMap = 4 + 6 + 1;  // the second of either, the quotient
// Three products; five filters of 11 taps in two directions; the mean.
constexpr double kGaussMoments = 3 + 5 * 42 + 1;
// Three products; of five quantities two sums down the column and two along the row.
constexpr double kFlatSums = 3 + 5 * 4;
// P, c1 + P + P, Sx Sx + c1 + Sy Sy; Q, c2 + Q + Q, (64 Sxx - Sx Sx) + c2 + (64 Syy - Sy Sy); the end as above.
constexpr double kFlatFormula = 1 + 2 + 4 + 2 + 2 + 6 + 2 + 1;
constexpr double kFlatContrastFormula = 1 + 2 + 2 + 8 + 1;

SSIMMoments Moments(const Planes& p) {
    return {p.first.get(),      p.second.get(),     p.squares[0].get(),
            p.squares[1].get(), p.squares[2].get(), p.stride};
}

template <class NextRow>
void Walk(const Planes& p, const NextRow& next) {
    FlatWalk walk({p.bytes[0].get(), p.width, p.bytes[1].get(), p.width, p.width, p.height}, 0,
                  p.scratch.get());
    for (int y = 0; y + kFlatWindow <= p.height; ++y) next(walk, p.results[0].get());
}

constexpr KernelCase kKernels[] = {
    {"FlatSSIM", 12, kFlatSums + kFlatFormula,
     [](const Planes& p) { FlatSSIM(p.Pair(p.results[0].get()), kFlatC1, kFlatC2, p.scratch.get()); }, false},
    {"FlatContrastStructure", 12, kFlatSums + kFlatContrastFormula,
     [](const Planes& p) { FlatContrastStructure(p.Pair(p.results[0].get()), kFlatC2, p.scratch.get()); },
     false},
    {"FlatWalk, NextSSIM", 2, kFlatSums + kFlatFormula,
     [](const Planes& p) {
         Walk(p, [](FlatWalk& walk, float* values) { walk.NextSSIM(kFlatC1, kFlatC2, values); });
     },
     false},
    {"FlatWalk, NextContrastStructure", 2, kFlatSums + kFlatContrastFormula,
     [](const Planes& p) {
         Walk(p, [](FlatWalk& walk, float* values) { walk.NextContrastStructure(kFlatC2, values); });
     },
     false},
    {"SSIMMap", 24, kMap,
     [](const Planes& p) { SSIMMap(Moments(p), p.results[0].get(), p.stride, p.width, p.height, kC1, kC2); }},
    {"GaussSSIM", 12, kGaussMoments + kMap,
     [](const Planes& p) {
         GaussSSIM(p.Pair(p.results[0].get()), BorderReplicate, kC1, kC2, p.scratch.get());
     }},
    {"GaussSSIM, mean alone", 8, kGaussMoments + kMap,
     [](const Planes& p) {
         benchmark::DoNotOptimize(GaussSSIM(p.Pair(nullptr), BorderReplicate, kC1, kC2, p.scratch.get()));
     }},
    {"GaussContrastStructure", 12, kGaussMoments + kContrastMap,
     [](const Planes& p) {
         GaussContrastStructure(p.Pair(p.results[0].get()), BorderReplicate, kC2, p.scratch.get());
     }},
    {"GaussContrastStructure, mean alone", 8, kGaussMoments + kContrastMap,
     [](const Planes& p) {
         benchmark::DoNotOptimize(
             GaussContrastStructure(p.Pair(nullptr), BorderReplicate, kC2, p.scratch.get()));
     }},
};

}  // namespace

std::span<const KernelCase> SimilarityKernels() {
    return kKernels;
}
