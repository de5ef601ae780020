/// Every kernel on planes of each size, with 1 and 2 threads. "bytes_per_second" counts what must be read and
/// written at least, so that it can be held against the machine's memory rate.

#include "bench/scene.h"
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
#include <cstddef>
#include <cstdint>
#include <random>

namespace {

using namespace Kernels;

constexpr int kWindowSize = 11;
constexpr float kSigma = 1.5f;
constexpr float kC1 = 6.5025f;
constexpr float kC2 = 58.5225f;
constexpr float kFlatC1 = 4096 * kC1;
constexpr float kFlatC2 = 4096 * kC2;

FloatPlane RandomPlane(int width, int height, unsigned seed, float greatest = 255) {
    FloatPlane plane = MakeFloatPlane(width, height);
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> values(0, greatest);
    std::generate_n(plane.get(), width * height, [&] { return values(random); });
    return plane;
}

BytePlane MakeBytes(std::size_t bytes) {
    return BytePlane(static_cast<std::uint8_t*>(AllocZeroed(bytes)));
}

// Areas of one class, as pictures have them.
BytePlane RandomClasses(std::size_t pixels) {
    BytePlane classes = MakeBytes(pixels);
    std::mt19937 random(7);
    for (std::size_t i = 0; i < pixels; ++i)
        classes[i] = static_cast<std::uint8_t>(i % 40 == 0 ? random() % kSumClasses : classes[i - 1]);
    return classes;
}

// The planes that the operations share; `result` is written by all.
struct Planes {
    Planes(int planeWidth, int planeHeight) : width(planeWidth), height(planeHeight) {}

    int width;
    int height;
    int stride = width * static_cast<int>(sizeof(float));
    std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    std::array<FloatPlane, 5> sources{
        RandomPlane(width, height, 1), RandomPlane(width, height, 2), RandomPlane(width, height, 3, 65025),
        RandomPlane(width, height, 4, 65025), RandomPlane(width, height, 5, 65025)};
    FloatPlane result = MakeFloatPlane(width, height);
    FloatPlane similarities = RandomPlane(width, height, 6, 1);
    BytePlane classes = RandomClasses(pixels);
    BytePlane picture = MakeBytes(3 * pixels);
    BytePlane bytes = MakeBytes(pixels);
    BytePlane moreBytes = MakeBytes(pixels + std::size_t{96} * static_cast<std::size_t>(width + height + 96));
    BytePlane scratch = MakeBytes(
        std::max({GetGaussScratchSize(width, height, kWindowSize), GetGaussSSIMScratchSize(width, height),
                  GetFlatSSIMScratchSize(width), FlatWalk::MemoryBytes(width)}));
};

template <class Operation>
void Measure(benchmark::State& state, int bytesPerPixel, const Operation& operation) {
    const int threads = omp_get_max_threads();
    omp_set_num_threads(static_cast<int>(state.range(2)));
    Planes planes(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    for (auto unused : state) {
        operation(planes, planes.sources[0].get(), planes.sources[1].get(), planes.result.get(),
                  planes.stride, planes.width, planes.height);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(planes.pixels) * bytesPerPixel);
    omp_set_num_threads(threads);
}

void SizesAndThreads(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"width", "height", "threads"})->UseRealTime()->Unit(benchmark::kMillisecond);
    for (const auto& [width, height] : kSizes)
        for (const int threads : {1, 2}) benchmark->Args({width, height, threads});
}

// Registers a case: NAME, bytes a pixel, and the call, which may use what the function takes.
#define KERNEL_BENCHMARK(name, bytesPerPixel, call)                                                          \
    void name##Case(benchmark::State& state) {                                                               \
        Measure(                                                                                             \
            state, bytesPerPixel,                                                                            \
            []([[maybe_unused]] Planes& planes, [[maybe_unused]] const float* a,                             \
               [[maybe_unused]] const float* b, [[maybe_unused]] float* result, [[maybe_unused]] int stride, \
               [[maybe_unused]] int width, [[maybe_unused]] int height) { call; });                          \
    }                                                                                                        \
    BENCHMARK(name##Case)->Name("kernels/" #name)->Apply(SizesAndThreads)

SSIMMoments Moments(const Planes& planes) {
    const auto& from = planes.sources;
    return {from[0].get(), from[1].get(), from[2].get(), from[3].get(), from[4].get(), planes.stride};
}

SSIMPlanes Pair(const Planes& planes) {
    return {planes.sources[0].get(),
            planes.stride,
            planes.sources[1].get(),
            planes.stride,
            planes.result.get(),
            planes.stride,
            planes.width,
            planes.height};
}

KERNEL_BENCHMARK(NormDiffL2, 8,
                 benchmark::DoNotOptimize(NormDiffL2(a, stride, b, stride, width, height, AccuracyHigh)));
KERNEL_BENCHMARK(Mean, 4, benchmark::DoNotOptimize(Mean(a, stride, width, height, AccuracyHigh)));
KERNEL_BENCHMARK(Max, 4, benchmark::DoNotOptimize(Max(a, stride, width, height)));
KERNEL_BENCHMARK(Sqr, 8, Sqr(a, stride, result, stride, width, height));
KERNEL_BENCHMARK(SqrtInPlace, 8, SqrtInPlace(result, stride, width, height));
KERNEL_BENCHMARK(Mul, 12, Mul(a, stride, b, stride, result, stride, width, height));
KERNEL_BENCHMARK(AddInPlace, 12, AddInPlace(a, stride, result, stride, width, height));
KERNEL_BENCHMARK(CopyPlane, 8, CopyPlane(a, stride, result, stride, width, height));
KERNEL_BENCHMARK(ConvertToBytes, 5, ConvertToBytes(a, stride, planes.bytes.get(), width, width, height));
KERNEL_BENCHMARK(CopyReplicateBorder, 2,
                 CopyReplicateBorder(planes.bytes.get(), width, width, height, planes.moreBytes.get(),
                                     width + 96, width + 96, height + 96, 48, 48));
KERNEL_BENCHMARK(FilterGaussBorder, 8,
                 FilterGaussBorder(a, stride, result, stride, width, height, kWindowSize, kSigma,
                                   BorderReplicate, 0, planes.scratch.get()));
KERNEL_BENCHMARK(FilterSobelHorizBorder, 8,
                 FilterSobelHorizBorder(a, stride, result, stride, width, height, BorderConstant, 0,
                                        planes.scratch.get()));
KERNEL_BENCHMARK(FilterSobelVertBorder, 8,
                 FilterSobelVertBorder(a, stride, result, stride, width, height, BorderConstant, 0,
                                       planes.scratch.get()));
KERNEL_BENCHMARK(OrderedSumOfFloats, 4,
                 benchmark::DoNotOptimize(OrderedSum(0.0f, planes.similarities.get(), stride, width,
                                                     height)));
KERNEL_BENCHMARK(OrderedSumOfDoubles, 4,
                 benchmark::DoNotOptimize(OrderedSum(0.0, planes.similarities.get(), stride, width, height)));
KERNEL_BENCHMARK(AddInOrder, 5, ClassSums sums = {}; AddInOrder(sums, planes.similarities.get(), stride,
                                                                planes.classes.get(), width, width, height);
                 benchmark::DoNotOptimize(sums));
KERNEL_BENCHMARK(PaintSimilarity, 7,
                 PaintSimilarity(planes.similarities.get(), stride, planes.picture.get(), 3 * width, width,
                                 height));
KERNEL_BENCHMARK(GreatestSobelSquare, 8,
                 benchmark::DoNotOptimize(GreatestSobelSquare({{a, b}, stride, width, height})));
KERNEL_BENCHMARK(FlatSSIM, 12, FlatSSIM(Pair(planes), kFlatC1, kFlatC2, planes.scratch.get()));
KERNEL_BENCHMARK(FlatWalk, 2,
                 FlatWalk walk({planes.bytes.get(), width, planes.picture.get(), width, width, height}, 0,
                               planes.scratch.get());
                 for (int y = 0; y + kFlatWindow <= height; ++y) walk.NextSSIM(kFlatC1, kFlatC2, result));
KERNEL_BENCHMARK(SSIMMap, 24, SSIMMap(Moments(planes), result, stride, width, height, kC1, kC2));
KERNEL_BENCHMARK(ContrastStructureMap, 24,
                 ContrastStructureMap(Moments(planes), result, stride, width, height, kC2));
KERNEL_BENCHMARK(GaussSSIM, 12, GaussSSIM(Pair(planes), BorderReplicate, kC1, kC2, planes.scratch.get()));
KERNEL_BENCHMARK(GaussContrastStructure, 12,
                 GaussContrastStructure(Pair(planes), BorderReplicate, kC2, planes.scratch.get()));
KERNEL_BENCHMARK(ResizeLinear, 5,
                 ResizeLinear(a, stride, width, height, {0, 0, width, height}, result, stride, width / 2,
                              height / 2, 0.5, 0.5));
KERNEL_BENCHMARK(SortAscend, 8, CopyPlane(a, stride, result, stride, width, height);
                 SortAscend(result, width* height));

}  // namespace
