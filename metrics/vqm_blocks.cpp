#include "metrics/vqm_blocks.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "metrics/vqm_blocks.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/transpose-inl.h"
#include "metrics/vqm_transform-inl.h"

#include <algorithm>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace Metric::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// So many blocks are taken together that their sums have a lane each on every instruction set.
constexpr int kBlocksAtOnce = 16;

using Floats = hn::CappedTag<float, kBlocksAtOnce>;
constexpr int kLanes = static_cast<int>(hn::MaxLanes(Floats()));

// What a row of blocks is worked on in.
struct Work {
    HWY_ALIGN double integers[kBlocksAtOnce][kArea];
    HWY_ALIGN float coefficients[2][kBlocksAtOnce][kArea];
    HWY_ALIGN float differences[kBlocksAtOnce][kArea];
};

// Cuts the samples of `count` blocks side by side. Not inlined, nor is what reads the integers one by one:
// GCC would take them out of the vectors again instead of loading them, which makes the transform half as
// fast.
HWY_NOINLINE void CutToIntegers(const float* HWY_RESTRICT samples, int stride, int count,
                                double (*integers)[kArea]) {
    const Doubles d;
    for (int y = 0; y < kSide; ++y) {
        for (int block = 0; block < count; ++block) {
            for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
                const auto cut =
                    hn::Trunc(hn::LoadU(SampleFloats(), samples + y * stride + block * kSide + x));
                hn::Store(hn::PromoteTo(d, cut), d, integers[block] + y * kSide + x);
            }
        }
    }
}

// contrast / quant, rounded to float once.
HWY_INLINE hn::Vec<Floats> Quantized(const VqmTables& tables, hn::Vec<Floats> contrast, int k) {
    const Floats f;
    const auto quant = hn::LoadU(f, tables.quantTable.data() + k);
#if HWY_NATIVE_FMA
    // A division takes longer than all else that is done with the coefficient. Let u be the quotient's unit
    // in the last place. Contrast times the rounded inverse is off by less than 1.5 u, so what it leaves,
    // computed without a rounding, is a multiple of u below 125 u, as quant is a whole number up to 83: a
    // float. Its share is off by less than u / 2^23. But a quotient is half way between two floats never, as
    // 25 bits times quant have more than the 24 of a contrast, and no nearer to it than u / 166: so both are
    // rounded alike.
    const auto inverse = hn::LoadU(f, tables.quantInverses.data() + k);
    const auto quotient = hn::Mul(contrast, inverse);
    return hn::MulAdd(hn::NegMulAdd(quotient, quant, contrast), inverse, quotient);
#else
    return hn::Div(contrast, quant);
#endif
}

// The differences of two blocks' contrasts; `greatest` is brought up to them.
HWY_INLINE void CompareBlocks(const VqmTables& tables, const float* first, const float* second,
                              float* differences, hn::Vec<Floats>& greatest) {
    const Floats f;
    const auto gainOf = [&](const float* block) HWY_ATTR {
        return hn::Set(f, tables.ContrastGain(static_cast<std::int16_t>(block[0])));
    };
    const auto gainFirst = gainOf(first);
    const auto gainSecond = gainOf(second);
    for (int k = 0; k < kArea; k += kLanes) {
        const auto a = Quantized(tables, hn::Mul(hn::Load(f, first + k), gainFirst), k);
        const auto b = Quantized(tables, hn::Mul(hn::Load(f, second + k), gainSecond), k);
        const auto difference = hn::Abs(hn::Sub(a, b));
        greatest = hn::Max(greatest, difference);
        hn::Store(difference, f, differences + k);
    }
}

// The blocks' sums, each added in row order: turned so that the lanes are blocks.
HWY_INLINE void SumDifferences(const float (*differences)[kArea], float* sums) {
    const Floats f;
    for (int block = 0; block < kBlocksAtOnce; block += kLanes) {
        auto sum = hn::Zero(f);
        for (int k = 0; k < kArea; k += kLanes) {
            hn::Vec<Floats> square[kLanes];
            for (int i = 0; i < kLanes; ++i) square[i] = hn::Load(f, differences[block + i] + k);
            Kernels::HWY_NAMESPACE::Transpose(f, square);
            for (int i = 0; i < kLanes; ++i) sum = hn::Add(sum, square[i]);
        }
        hn::Store(sum, f, sums + block);
    }
}

float CompareRow(const VqmTables& tables, const float* first, const float* second, int width,
                 float* blockSums) {
    auto greatest = hn::Zero(Floats());
    Work work;
    std::fill_n(work.differences[0], kBlocksAtOnce * kArea, 0.0f);
    const int blocks = width / kSide;
    for (int begin = 0; begin < blocks; begin += kBlocksAtOnce) {
        const int count = std::min(kBlocksAtOnce, blocks - begin);
        for (int picture = 0; picture < 2; ++picture) {
            CutToIntegers((picture == 0 ? first : second) + begin * kSide, width, count, work.integers);
            for (int block = 0; block < count; ++block) {
                const double* const samples = work.integers[block];
                float* const coefficients = work.coefficients[picture][block];
                if (!FoldedTransform(tables, samples, coefficients))
                    StatedTransform(tables, samples, coefficients);
            }
        }
        for (int block = 0; block < count; ++block) {
            CompareBlocks(tables, work.coefficients[0][block], work.coefficients[1][block],
                          work.differences[block], greatest);
        }
        HWY_ALIGN float sums[kBlocksAtOnce];
        SumDifferences(work.differences, sums);
        std::copy_n(sums, count, blockSums + begin);
    }
    return hn::GetLane(hn::MaxOfLanes(Floats(), greatest));
}

}  // namespace
}  // namespace Metric::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Metric {

namespace {
HWY_EXPORT(CompareRow);
}  // namespace

float CompareVqmBlocks(const VqmTables& tables, const float* first, const float* second, int width,
                       float* blockSums) {
    return HWY_DYNAMIC_DISPATCH(CompareRow)(tables, first, second, width, blockSums);
}

}  // namespace Metric
#endif
