// Included once for each instruction set by the files that Highway compiles so.

#if defined(METRICS_VQM_TRANSFORM_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef METRICS_VQM_TRANSFORM_INL_H
#undef METRICS_VQM_TRANSFORM_INL_H
#else
#define METRICS_VQM_TRANSFORM_INL_H
#endif

#include <hwy/highway.h>

#include <cstdint>

#include "metrics/vqm_blocks.h"
#include "metrics/vqm_tables.h"

HWY_BEFORE_NAMESPACE();
namespace Metric::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

// The transform of VQM: from a block's samples to its 64 coefficients, floor(c + kRounding) each, cut to 16
// bits. `StatedTransform` defines them, `FoldedTransform` finds nearly all of them in fewer operations.

constexpr int kSide = kVqmBlockSize;
constexpr int kArea = kSide * kSide;
constexpr int kHalf = kSide / 2;
constexpr double kRounding = 0.499999;

using Doubles = hn::CappedTag<double, kSide>;  // a vector never spans more than a row of the block
using DoubleVector = hn::Vec<Doubles>;
using SampleFloats = hn::Rebind<float, Doubles>;

// The sum over k from 0 to `terms` of weight(k) times row(k), added in this order.
template <class Weight, class Row>
HWY_INLINE DoubleVector WeightedSum(int terms, const Weight& weight, const Row& row) {
    auto sum = hn::Mul(weight(0), row(0));
    for (int k = 1; k < terms; ++k) sum = hn::Add(sum, hn::Mul(weight(k), row(k)));
    return sum;
}

// In the order that belongs to the measure. Both passes keep columns of the result in lanes, so that every
// sum has its own lane, and nothing is transposed: pass 1 multiplies a sample by a row of the transposed
// matrix, pass 2 an entry of the matrix by a row of pass 1.
HWY_NOINLINE void StatedTransform(const VqmTables& tables, const double* HWY_RESTRICT samples,
                                  float* HWY_RESTRICT coefficients) {
    const Doubles d;
    const hn::Rebind<std::int32_t, Doubles> integers;
    for (int column = 0; column < kSide; column += static_cast<int>(hn::Lanes(d))) {
        const double* transposed = tables.dctTransposed.data() + column;
        DoubleVector transformedRows[kSide];
        for (int y = 0; y < kSide; ++y) {
            transformedRows[y] = WeightedSum(
                kSide, [&](int k) HWY_ATTR { return hn::Set(d, samples[y * kSide + k]); },
                [&](int k) HWY_ATTR { return hn::LoadU(d, transposed + k * kSide); });
        }
        for (int v = 0; v < kSide; ++v) {
            const auto sum = WeightedSum(
                kSide, [&](int k) HWY_ATTR { return hn::Set(d, tables.dctMatrix.data()[v * kSide + k]); },
                [&](int k) HWY_ATTR { return transformedRows[k]; });
            const auto rounded = hn::DemoteTo(integers, hn::Floor(hn::Add(sum, hn::Set(d, kRounding))));
            const auto low16 = hn::ShiftRight<16>(hn::ShiftLeft<16>(rounded));
            hn::StoreU(hn::ConvertTo(SampleFloats(), low16), SampleFloats(),
                       coefficients + v * kSide + column);
        }
    }
}

#if HWY_TARGET == HWY_SCALAR

HWY_INLINE bool FoldedTransform(const VqmTables&, const double*, float*) {
    return false;
}

#else

// `FoldedTransform` in three steps, which aren't inlined: GCC would keep the rows in vectors from one to the
// next and take them apart there, instead of loading what it needs twice.

HWY_NOINLINE void TransformColumns(const VqmTables& tables, const double* HWY_RESTRICT samples,
                                   double* HWY_RESTRICT columns) {
    const Doubles d;
    for (int column = 0; column < kSide; column += static_cast<int>(hn::Lanes(d))) {
        DoubleVector sums[kHalf], differences[kHalf];
        for (int k = 0; k < kHalf; ++k) {
            const auto near = hn::Load(d, samples + k * kSide + column);
            const auto far = hn::Load(d, samples + (kSide - 1 - k) * kSide + column);
            sums[k] = hn::Add(near, far);
            differences[k] = hn::Sub(near, far);
        }
        for (int v = 0; v < kSide; ++v) {
            const auto sum = WeightedSum(
                kHalf, [&](int k) HWY_ATTR { return hn::Set(d, tables.dctMatrix.data()[v * kSide + k]); },
                [&](int k) HWY_ATTR { return v % 2 == 0 ? sums[k] : differences[k]; });
            hn::Store(sum, d, columns + v * kSide + column);
        }
    }
}

// The sums and the differences of entries k and 7 - k of each row, as pairs; pair k is at PairPlace(k) in its
// row.
using HalfRow = hn::CappedTag<double, kHalf>;
constexpr int kHalfLanes = static_cast<int>(hn::MaxLanes(HalfRow()));

constexpr int PairPlace(int k) {
    // Of a vector's blocks of two lanes the lower halves come first, then the upper ones.
    return kHalfLanes == 4 ? 2 * (k / 2) + 4 * (k % 2) : 2 * k;
}

HWY_NOINLINE void FoldRows(const double* HWY_RESTRICT rows, double* HWY_RESTRICT pairs) {
    const HalfRow d;
    for (int row = 0; row < kArea; row += kSide) {
        for (int i = 0; i < kHalf; i += kHalfLanes) {
            const auto near = hn::Load(d, rows + row + i);
            const auto far = hn::Reverse(d, hn::Load(d, rows + row + kSide - kHalfLanes - i));
            const auto sum = hn::Add(near, far);
            const auto difference = hn::Sub(near, far);
            hn::Store(hn::InterleaveLower(d, sum, difference), d, pairs + row + 2 * i);
            hn::Store(hn::InterleaveUpper(d, sum, difference), d, pairs + row + 2 * i + kHalfLanes);
        }
    }
}

HWY_NOINLINE bool TransformRows(const VqmTables& tables, const double* HWY_RESTRICT pairs,
                                float* HWY_RESTRICT coefficients) {
    constexpr double kDoubt = 1e-7;
    constexpr double kLargest = 4096;
    const Doubles d;
    auto least = hn::Set(d, 0.5);  // of what is above a whole number
    auto most = least;
    auto largest = least;
    for (int v = 0; v < kSide; ++v) {
        for (int column = 0; column < kSide; column += static_cast<int>(hn::Lanes(d))) {
            const auto sum = WeightedSum(
                kHalf, [&](int k) HWY_ATTR { return hn::LoadDup128(d, pairs + v * kSide + PairPlace(k)); },
                [&](int k)
                    HWY_ATTR { return hn::LoadU(d, tables.dctTransposed.data() + k * kSide + column); });
            const auto shifted = hn::Add(sum, hn::Set(d, kRounding));
            const auto floor = hn::Floor(shifted);
            const auto above = hn::Sub(shifted, floor);
            least = hn::Min(least, above);
            most = hn::Max(most, above);
            largest = hn::Max(largest, hn::Abs(floor));
            hn::StoreU(hn::DemoteTo(SampleFloats(), floor), SampleFloats(),
                       coefficients + v * kSide + column);
        }
    }
    const auto isApart = hn::And(hn::Gt(least, hn::Set(d, kDoubt)), hn::Lt(most, hn::Set(d, 1 - kDoubt)));
    return hn::AllTrue(d, hn::And(isApart, hn::Lt(largest, hn::Set(d, kLargest))));
}

// The even rows of the matrix are symmetric and the odd ones antisymmetric, so sums and differences of
// opposite samples need half the products. Columns first, then rows.
//
// What comes out differs from the stated sums by roundings only. False, with anything in `coefficients`, where
// these could matter. In units of the greatest sample: some 60 roundings of 2^-53 of at most 16 make less than
// 1.1e-13 in either form, and opposite entries of the matrix differ by less than 4e-15, which makes less than
// 2e-13. The transform keeps the sum of squares, so if no coefficient exceeds 2^12, no sample exceeds 2^15, and
// the forms are within 1.4e-8 of each other. If c + kRounding is further than 1e-7 from a whole number, both
// have the same floor, which needs no cut to 16 bits either.
HWY_INLINE bool FoldedTransform(const VqmTables& tables, const double* samples, float* coefficients) {
    HWY_ALIGN double columns[kArea];
    HWY_ALIGN double pairs[kArea];
    TransformColumns(tables, samples, columns);
    FoldRows(columns, pairs);
    return TransformRows(tables, pairs, coefficients);
}

#endif

}  // namespace Metric::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
