#include "metrics/vqm_blocks.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "metrics/vqm_blocks.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace Metric::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

constexpr int kSide = kVqmBlockSize;
constexpr int kArea = kSide * kSide;

// Blocks whose sums grow side by side: an addition takes longer than the time until the next could start.
constexpr int kBlocksAtOnce = 8;

using Doubles = hn::CappedTag<double, kSide>;  // a vector never spans more than a row of the block
using SampleFloats = hn::Rebind<float, Doubles>;
using Integers = hn::Rebind<std::int32_t, Doubles>;
using Floats = hn::CappedTag<float, kArea>;

HWY_INLINE void CutToIntegers(const float* HWY_RESTRICT samples, int stride, double* HWY_RESTRICT integers) {
    const Doubles d;
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; x += static_cast<int>(hn::Lanes(d))) {
            const auto cut = hn::Trunc(hn::LoadU(SampleFloats(), samples + y * stride + x));
            hn::Store(hn::PromoteTo(d, cut), d, integers + y * kSide + x);
        }
    }
}

// Both passes keep columns of the result in lanes, so that every sum has its own lane, and nothing is
// transposed: pass 1 multiplies a sample by a row of the transposed matrix, pass 2 an entry of the matrix
// by a row of pass 1.
HWY_INLINE void Transform(const VqmTables& tables, const double* HWY_RESTRICT samples,
                          float* HWY_RESTRICT coefficients) {
    const Doubles d;
    for (int column = 0; column < kSide; column += static_cast<int>(hn::Lanes(d))) {
        // The sum over k of weights[k] times rows(k), added in this order.
        const auto weightedSum = [d](const double* weights, const auto& rows) HWY_ATTR {
            auto sum = hn::Mul(hn::Set(d, weights[0]), rows(0));
            for (int k = 1; k < kSide; ++k) sum = hn::Add(sum, hn::Mul(hn::Set(d, weights[k]), rows(k)));
            return sum;
        };
        const double* transposed = tables.dctTransposed.data() + column;
        hn::Vec<Doubles> transformedRows[kSide];
        for (int y = 0; y < kSide; ++y) {
            transformedRows[y] = weightedSum(samples + y * kSide, [d, transposed](int k) HWY_ATTR {
                return hn::LoadU(d, transposed + k * kSide);
            });
        }
        for (int v = 0; v < kSide; ++v) {
            const auto sum = weightedSum(tables.dctMatrix.data() + v * kSide,
                                         [&](int k) HWY_ATTR { return transformedRows[k]; });
            const auto rounded = hn::DemoteTo(Integers(), hn::Floor(hn::Add(sum, hn::Set(d, 0.499999))));
            const auto low16 = hn::ShiftRight<16>(hn::ShiftLeft<16>(rounded));
            hn::StoreU(hn::ConvertTo(SampleFloats(), low16), SampleFloats(),
                       coefficients + v * kSide + column);
        }
    }
}

// The block's 64 coefficients; returns the gain that makes them contrasts.
HWY_INLINE float TransformBlock(const VqmTables& tables, const float* samples, int stride,
                                float* coefficients) {
    HWY_ALIGN double integers[kArea];
    CutToIntegers(samples, stride, integers);
    Transform(tables, integers, coefficients);
    return tables.ContrastGain(static_cast<int>(coefficients[0]));
}

float CompareRow(const VqmTables& tables, const float* first, const float* second, int width,
                 float* blockSums) {
    const Floats f;
    auto greatest = hn::Zero(f);
    HWY_ALIGN float coefficients[2][kArea];
    HWY_ALIGN float differences[kBlocksAtOnce][kArea] = {};
    const int blocks = width / kSide;
    for (int begin = 0; begin < blocks; begin += kBlocksAtOnce) {
        const int count = std::min(kBlocksAtOnce, blocks - begin);
        for (int block = 0; block < count; ++block) {
            const int x = (begin + block) * kSide;
            const auto gainFirst = hn::Set(f, TransformBlock(tables, first + x, width, coefficients[0]));
            const auto gainSecond = hn::Set(f, TransformBlock(tables, second + x, width, coefficients[1]));
            for (int k = 0; k < kArea; k += static_cast<int>(hn::Lanes(f))) {
                const auto quant = hn::LoadU(f, tables.quantTable.data() + k);
                const auto a = hn::Div(hn::Mul(hn::Load(f, coefficients[0] + k), gainFirst), quant);
                const auto b = hn::Div(hn::Mul(hn::Load(f, coefficients[1] + k), gainSecond), quant);
                const auto difference = hn::Abs(hn::Sub(a, b));
                greatest = hn::Max(greatest, difference);
                hn::Store(difference, f, differences[block] + k);
            }
        }
        float sums[kBlocksAtOnce] = {};
        for (int k = 0; k < kArea; ++k) {
            for (int block = 0; block < kBlocksAtOnce; ++block) sums[block] += differences[block][k];
        }
        std::copy_n(sums, count, blockSums + begin);
    }
    return hn::GetLane(hn::MaxOfLanes(f, greatest));
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
