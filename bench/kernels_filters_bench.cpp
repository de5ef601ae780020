/// Filters, borders and other sizes.

#include "bench/kernels_bench.h"
#include "kernels/border.h"
#include "kernels/gauss.h"
#include "kernels/gauss_ssim.h"
#include "kernels/halve.h"
#include "kernels/resize.h"
#include "kernels/sobel.h"
#include "kernels/sobel_squares.h"

#include <benchmark/benchmark.h>

namespace {

using namespace Kernels;
using Planes = KernelPlanes;

constexpr double kGaussOperations = 2 * (kGaussWindow + kGaussWindow - 1);
static_assert(kGaussOperations == 42);

// To multiples of 8 and 8 more, as for a metric of blocks.
void PadFloats(const Planes& p) {
    const int width = p.width + 8;
    CopyReplicateBorder(p.first.get(), p.stride, p.width, p.height,
                        reinterpret_cast<float*>(p.floatsWithMargins.get()),
                        width * static_cast<int>(sizeof(float)), width, p.height + 8, 0, 0);
}

void PadBytes(const Planes& p) {
    CopyReplicateBorder(p.bytes[0].get(), p.width, p.width, p.height, p.marginResults[0].get(),
                        p.marginStride, p.marginStride, p.marginHeight, Planes::kMargin, Planes::kMargin);
}

template <BorderKind kBorder>
void Gauss(const Planes& p) {
    FilterGaussBorder(p.first.get(), p.stride, p.results[0].get(), p.stride, p.width, p.height, kGaussWindow,
                      kGaussSigma, kBorder, 0, p.scratch.get());
}

template <auto kFilter>
void Sobel(const Planes& p) {
    kFilter(p.first.get(), p.stride, p.results[0].get(), p.stride, p.width, p.height, BorderConstant, 0,
            p.scratch.get());
}

template <int kNumerator, int kDenominator>
void Resize(const Planes& p) {
    constexpr double kFactor = static_cast<double>(kNumerator) / kDenominator;
    const int width = p.width * kNumerator / kDenominator;
    ResizeLinear(p.first.get(), p.stride, p.width, p.height, {0, 0, p.width, p.height}, p.results[0].get(),
                 width * static_cast<int>(sizeof(float)), width, p.height * kNumerator / kDenominator,
                 kFactor, kFactor);
}

void HalveFloats(const Planes& p) {
    Halve(p.first.get(), p.stride, p.results[0].get(), p.stride / 2, p.width / 2, p.height / 2);
}

void HalveSamples(const Planes& p) {
    HalveBytes(p.bytes[0].get(), p.width, p.results[0].get(), p.stride / 2, p.width / 2, p.height / 2);
}

// Work is that of a pixel of the source; margins aren't counted.
constexpr double kPixelsOfHalf = 0.25;  // of a picture of half the size, to one of the source
constexpr double kPixelsOfThreeQuarters = 0.5625;
constexpr double kOfFour = 4 + 3;  // products and sums of four pixels
constexpr double kWeights = 4;     // products of a column's and a row's

constexpr KernelCase kKernels[] = {
    {"CopyReplicateBorder of bytes", 2, 0, PadBytes},
    {"CopyReplicateBorder of floats", 8, 0, PadFloats},
    {"FilterGaussBorder, constant", 8, kGaussOperations, Gauss<BorderConstant>},
    {"FilterGaussBorder, replicate", 8, kGaussOperations, Gauss<BorderReplicate>},
    {"FilterSobelHorizBorder", 8, 7, Sobel<FilterSobelHorizBorder>},
    {"FilterSobelVertBorder", 8, 7, Sobel<FilterSobelVertBorder>},
    // Of each plane two filters, two squares, their sum and whether it is greater.
    {"GreatestSobelSquare", 8, 2 * (7 + 7 + 2 + 1 + 1),
     [](const Planes& p) {
         benchmark::DoNotOptimize(
             GreatestSobelSquare({{p.first.get(), p.second.get()}, p.stride, p.width, p.height}));
     }},
    {"Halve", 4 + 4 * kPixelsOfHalf, 4 * kPixelsOfHalf, HalveFloats, false},  // three sums and a product
    {"HalveBytes", 1 + 4 * kPixelsOfHalf, 4 * kPixelsOfHalf, HalveSamples, false},
    {"ResizeLinear by 1/2", 4 + 4 * kPixelsOfHalf, (kOfFour + kWeights) * kPixelsOfHalf, Resize<1, 2>},
    {"ResizeLinear by 3/4", 4 + 4 * kPixelsOfThreeQuarters, (kOfFour + kWeights) * kPixelsOfThreeQuarters,
     Resize<3, 4>, false},
};

}  // namespace

std::span<const KernelCase> FilterKernels() {
    return kKernels;
}
