/// Every kernel on a 1920x1080 plane, with 1 and 2 threads. "bytes_per_second" counts what must be read and
/// written at least, so that it can be held against the machine's memory rate.

#include "kernels/arithmetic.h"
#include "kernels/border.h"
#include "kernels/flat_ssim.h"
#include "kernels/flat_walk.h"
#include "kernels/gauss.h"
#include "kernels/gauss_ssim.h"
#include "kernels/ordered_class_sums.h"
#include "kernels/ordered_sum.h"
#include "kernels/painting.h"
#include "kernels/plane.h"
#include "kernels/reductions.h"
#include "kernels/resize.h"
#include "kernels/sobel.h"
#include "kernels/sobel_squares.h"
#include "kernels/sort.h"
#include "kernels/ssim_map.h"

#include <benchmark/benchmark.h>
#include <omp.h>

#include <algorithm>
#include <array>
#include <random>

namespace {

using namespace Kernels;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int kPixels = kWidth * kHeight;
constexpr int kStride = kWidth * static_cast<int>(sizeof(float));
constexpr int kWindowSize = 11;
constexpr float kSigma = 1.5f;
constexpr float kC1 = 6.5025f;
constexpr float kC2 = 58.5225f;
constexpr float kFlatC1 = 4096 * kC1;
constexpr float kFlatC2 = 4096 * kC2;

FloatPlane RandomPlane(unsigned seed, float greatest = 255) {
    FloatPlane plane = MakeFloatPlane(kWidth, kHeight);
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> values(0, greatest);
    std::generate_n(plane.get(), kPixels, [&] { return values(random); });
    return plane;
}

// Areas of one class, as pictures have them.
BytePlane RandomClasses() {
    BytePlane classes(static_cast<std::uint8_t*>(AllocZeroed(kPixels)));
    std::mt19937 random(7);
    for (int i = 0; i < kPixels; ++i)
        classes[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(
            i % 40 == 0 ? random() % kSumClasses : classes[static_cast<std::size_t>(i - 1)]);
    return classes;
}

// The planes that the operations share; `result` is written by all.
struct Planes {
    std::array<FloatPlane, 5> sources{RandomPlane(1), RandomPlane(2), RandomPlane(3, 65025),
                                      RandomPlane(4, 65025), RandomPlane(5, 65025)};
    FloatPlane result = MakeFloatPlane(kWidth, kHeight);
    FloatPlane similarities = RandomPlane(6, 1);
    BytePlane classes = RandomClasses();
    BytePlane picture{static_cast<std::uint8_t*>(AllocZeroed(3 * kPixels))};
    BytePlane bytes{static_cast<std::uint8_t*>(AllocZeroed(kPixels))};
    BytePlane moreBytes{static_cast<std::uint8_t*>(AllocZeroed((kWidth + 96) * (kHeight + 96)))};
    BytePlane scratch{static_cast<std::uint8_t*>(AllocZeroed(std::max(
        GetGaussScratchSize(kWidth, kHeight, kWindowSize), GetGaussSSIMScratchSize(kWidth, kHeight))))};
};

Planes& Shared() {
    static Planes planes;
    return planes;
}

template <class Operation>
void Measure(benchmark::State& state, int bytesPerPixel, const Operation& operation) {
    const int threads = omp_get_max_threads();
    omp_set_num_threads(static_cast<int>(state.range(0)));
    Planes& planes = Shared();
    for (auto unused : state) {
        operation(planes, planes.sources[0].get(), planes.sources[1].get(), planes.result.get());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(std::int64_t{state.iterations()} * kPixels * bytesPerPixel);
    omp_set_num_threads(threads);
}

// Registers a case: NAME, bytes a pixel, and the call, which may use planes, a, b and result.
#define KERNEL_BENCHMARK(name, bytesPerPixel, call)                                             \
    void name##Case(benchmark::State& state) {                                                  \
        Measure(state, bytesPerPixel,                                                           \
                []([[maybe_unused]] Planes& planes, [[maybe_unused]] const float* a,            \
                   [[maybe_unused]] const float* b, [[maybe_unused]] float* result) { call; }); \
    }                                                                                           \
    BENCHMARK(name##Case)                                                                       \
        ->Name("kernels/" #name)                                                                \
        ->ArgName("threads")                                                                    \
        ->Arg(1)                                                                                \
        ->Arg(2)                                                                                \
        ->UseRealTime()                                                                         \
        ->Unit(benchmark::kMillisecond)

SSIMMoments Moments(const Planes& planes) {
    const auto& from = planes.sources;
    return {from[0].get(), from[1].get(), from[2].get(), from[3].get(), from[4].get(), kStride};
}

SSIMPlanes Pair(const Planes& planes) {
    return {planes.sources[0].get(),
            kStride,
            planes.sources[1].get(),
            kStride,
            planes.result.get(),
            kStride,
            kWidth,
            kHeight};
}

KERNEL_BENCHMARK(NormDiffL2, 8,
                 benchmark::DoNotOptimize(NormDiffL2(a, kStride, b, kStride, kWidth, kHeight, AccuracyHigh)));
KERNEL_BENCHMARK(Mean, 4, benchmark::DoNotOptimize(Mean(a, kStride, kWidth, kHeight, AccuracyHigh)));
KERNEL_BENCHMARK(Max, 4, benchmark::DoNotOptimize(Max(a, kStride, kWidth, kHeight)));
KERNEL_BENCHMARK(Sqr, 8, Sqr(a, kStride, result, kStride, kWidth, kHeight));
KERNEL_BENCHMARK(SqrtInPlace, 8, SqrtInPlace(result, kStride, kWidth, kHeight));
KERNEL_BENCHMARK(Mul, 12, Mul(a, kStride, b, kStride, result, kStride, kWidth, kHeight));
KERNEL_BENCHMARK(AddInPlace, 12, AddInPlace(a, kStride, result, kStride, kWidth, kHeight));
KERNEL_BENCHMARK(CopyPlane, 8, CopyPlane(a, kStride, result, kStride, kWidth, kHeight));
KERNEL_BENCHMARK(ConvertToBytes, 5, ConvertToBytes(a, kStride, planes.bytes.get(), kWidth, kWidth, kHeight));
KERNEL_BENCHMARK(CopyReplicateBorder, 2,
                 CopyReplicateBorder(planes.bytes.get(), kWidth, kWidth, kHeight, planes.moreBytes.get(),
                                     kWidth + 96, kWidth + 96, kHeight + 96, 48, 48));
KERNEL_BENCHMARK(FilterGaussBorder, 8,
                 FilterGaussBorder(a, kStride, result, kStride, kWidth, kHeight, kWindowSize, kSigma,
                                   BorderReplicate, 0, planes.scratch.get()));
KERNEL_BENCHMARK(FilterSobelHorizBorder, 8,
                 FilterSobelHorizBorder(a, kStride, result, kStride, kWidth, kHeight, BorderConstant, 0,
                                        planes.scratch.get()));
KERNEL_BENCHMARK(FilterSobelVertBorder, 8,
                 FilterSobelVertBorder(a, kStride, result, kStride, kWidth, kHeight, BorderConstant, 0,
                                       planes.scratch.get()));
KERNEL_BENCHMARK(OrderedSumOfFloats, 4,
                 benchmark::DoNotOptimize(OrderedSum(0.0f, planes.similarities.get(), kStride, kWidth,
                                                     kHeight)));
KERNEL_BENCHMARK(OrderedSumOfDoubles, 4,
                 benchmark::DoNotOptimize(OrderedSum(0.0, planes.similarities.get(), kStride, kWidth,
                                                     kHeight)));
KERNEL_BENCHMARK(AddInOrder, 5, ClassSums sums = {};
                 AddInOrder(sums, planes.similarities.get(), kStride, planes.classes.get(), kWidth, kWidth,
                            kHeight);
                 benchmark::DoNotOptimize(sums));
KERNEL_BENCHMARK(PaintSimilarity, 7,
                 PaintSimilarity(planes.similarities.get(), kStride, planes.picture.get(), 3 * kWidth, kWidth,
                                 kHeight));
KERNEL_BENCHMARK(GreatestSobelSquare, 8,
                 benchmark::DoNotOptimize(GreatestSobelSquare({{a, b}, kStride, kWidth, kHeight})));
KERNEL_BENCHMARK(FlatSSIM, 12, FlatSSIM(Pair(planes), kFlatC1, kFlatC2, planes.scratch.get()));
KERNEL_BENCHMARK(FlatWalk, 2,
                 FlatWalk walk({planes.bytes.get(), kWidth, planes.picture.get(), kWidth, kWidth, kHeight}, 0,
                               planes.scratch.get());
                 for (int y = 0; y + kFlatWindow <= kHeight; ++y) walk.NextSSIM(kFlatC1, kFlatC2, result));
KERNEL_BENCHMARK(SSIMMap, 24, SSIMMap(Moments(planes), result, kStride, kWidth, kHeight, kC1, kC2));
KERNEL_BENCHMARK(ContrastStructureMap, 24,
                 ContrastStructureMap(Moments(planes), result, kStride, kWidth, kHeight, kC2));
KERNEL_BENCHMARK(GaussSSIM, 12, GaussSSIM(Pair(planes), BorderReplicate, kC1, kC2, planes.scratch.get()));
KERNEL_BENCHMARK(GaussContrastStructure, 12,
                 GaussContrastStructure(Pair(planes), BorderReplicate, kC2, planes.scratch.get()));
KERNEL_BENCHMARK(ResizeLinear, 5,
                 ResizeLinear(a, kStride, kWidth, kHeight, {0, 0, kWidth, kHeight}, result, kStride,
                              kWidth / 2, kHeight / 2, 0.5, 0.5));
KERNEL_BENCHMARK(SortAscend, 8, CopyPlane(a, kStride, result, kStride, kWidth, kHeight);
                 SortAscend(result, kPixels));

}  // namespace
