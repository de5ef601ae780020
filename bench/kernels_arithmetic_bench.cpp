/// Sums, differences and copies.

#include "bench/kernels_bench.h"
#include "kernels/arithmetic.h"
#include "kernels/ordered_class_sums.h"
#include "kernels/ordered_sum.h"
#include "kernels/reductions.h"
#include "kernels/sample_difference.h"
#include "kernels/samples.h"
#include "kernels/smallest.h"
#include "kernels/sort.h"

#include <benchmark/benchmark.h>

namespace {

using namespace Kernels;
using Planes = KernelPlanes;
using benchmark::DoNotOptimize;

// The pixels are made of samples.
void DifferenceAsRead(const Planes& p) {
    const auto make = [&](int x, int y, int count, float* a, float* b) {
        LoadSamples({p.bytes[0].get() + std::ptrdiff_t{p.width} * y + x, 1, 0, 1}, false, 1, 128, a, count);
        LoadSamples({p.bytes[1].get() + std::ptrdiff_t{p.width} * y + x, 1, 0, 1}, false, 1, 128, b, count);
    };
    DoNotOptimize(NormDiffL2AsRead(make, p.width, p.height, AccuracyHigh));
}

template <int kSampleBytes>
void SampleDifference(const Planes& p) {
    const BytePlane* const samples = kSampleBytes == 1 ? p.bytes : p.words;
    const std::ptrdiff_t stride = std::ptrdiff_t{p.width} * kSampleBytes;
    DoNotOptimize(SumSquaredDifferences({samples[0].get(), stride}, {samples[1].get(), stride}, kSampleBytes,
                                        p.width, p.height));
}

void SumOfClasses(const Planes& p) {
    ClassSums sums = {};
    AddInOrder(sums, p.similarities.get(), p.stride, p.classes.get(), p.width, p.width, p.height);
    DoNotOptimize(sums);
}

// A share as stSSIM takes it.
void Smallest(const Planes& p) {
    const int count = p.width * p.height;
    DoNotOptimize(MeanOfSmallest(p.similarities.get(), count, count / 16, p.results[0].get()));
}

void SortCopy(const Planes& p) {
    CopyPlane(p.first.get(), p.stride, p.results[0].get(), p.stride, p.width, p.height);
    SortAscend(p.results[0].get(), p.width * p.height);
}

constexpr KernelCase kKernels[] = {
    {"Sqr", 8, 1,
     [](const Planes& p) { Sqr(p.first.get(), p.stride, p.results[0].get(), p.stride, p.width, p.height); }},
    {"SqrInPlace", 8, 1, [](const Planes& p) { SqrInPlace(p.ones.get(), p.stride, p.width, p.height); }},
    {"SqrtInPlace", 8, 1, [](const Planes& p) { SqrtInPlace(p.ones.get(), p.stride, p.width, p.height); }},
    {"Mul", 12, 1,
     [](const Planes& p) {
         Mul(p.first.get(), p.stride, p.second.get(), p.stride, p.results[0].get(), p.stride, p.width,
             p.height);
     }},
    {"AddInPlace", 12, 1,
     [](const Planes& p) {
         AddInPlace(p.first.get(), p.stride, p.results[0].get(), p.stride, p.width, p.height);
     }},
    {"CopyPlane", 8, 0,
     [](const Planes& p) {
         CopyPlane(p.first.get(), p.stride, p.results[0].get(), p.stride, p.width, p.height);
     }},
    {"ConvertToBytes", 5, 2,
     [](const Planes& p) {
         ConvertToBytes(p.first.get(), p.stride, p.picture.get(), p.width, p.width, p.height);
     }},

    {"NormDiffL2", 8, 3,
     [](const Planes& p) {
         DoNotOptimize(
             NormDiffL2(p.first.get(), p.stride, p.second.get(), p.stride, p.width, p.height, AccuracyHigh));
     }},
    {"NormDiffL2AsRead, from bytes", 2, 5, DifferenceAsRead},  // both centred
    {"SumSquaredDifferences of bytes", 2, 3, SampleDifference<1>},
    {"SumSquaredDifferences of words", 4, 3, SampleDifference<2>},
    {"Mean", 4, 1,
     [](const Planes& p) { DoNotOptimize(Mean(p.first.get(), p.stride, p.width, p.height, AccuracyHigh)); }},
    {"Max", 4, 1, [](const Planes& p) { DoNotOptimize(Max(p.first.get(), p.stride, p.width, p.height)); }},

    {"OrderedSum of floats", 4, 1,
     [](const Planes& p) {
         DoNotOptimize(OrderedSum(0.0f, p.similarities.get(), p.stride, p.width, p.height));
     },
     false},
    {"OrderedSum of doubles", 4, 1,
     [](const Planes& p) {
         DoNotOptimize(OrderedSum(0.0, p.similarities.get(), p.stride, p.width, p.height));
     },
     false},
    {"AddInOrder", 5, 1, SumOfClasses, false},
    {"MeanOfSmallest", 4, 0, Smallest, false},
    {"SortAscend, with a copy", 8, 0, SortCopy, false},
};

}  // namespace

std::span<const KernelCase> ArithmeticKernels() {
    return kKernels;
}
