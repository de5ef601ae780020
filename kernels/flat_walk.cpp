#include "kernels/flat_walk.h"

#include "kernels/flat_ssim.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/flat_walk.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "kernels/eight_wide-inl.h"
#include "kernels/flat_formula-inl.h"

#include <algorithm>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using Floats = FlatFloats;
using Vector = FlatVector;
using Integers = hn::Rebind<std::int32_t, Floats>;
using Bytes = hn::Rebind<std::uint8_t, Floats>;
constexpr int kLanes = static_cast<int>(hn::MaxLanes(Floats()));

using FlatRow = FlatWalk::Row;

HWY_INLINE hn::Vec<Integers> LoadSamples(const std::uint8_t* row, int x, int width) {
    const Bytes bytes;
    if (x + kLanes <= width) return hn::PromoteTo(Integers(), hn::LoadU(bytes, row + x));
    HWY_ALIGN std::uint8_t rest[kLanes] = {};
    std::copy(row + x, row + width, rest);
    return hn::PromoteTo(Integers(), hn::Load(bytes, rest));
}

// The sums of 8 rows of kLanes columns.
struct ColumnSums {
    hn::Vec<Integers> samples;
    Vector products[FlatWalk::kQuantities - 1];
};

HWY_INLINE ColumnSums SumColumns(const FlatRow& row, int x) {
    const Floats d;
    const Integers integers;
    const auto first = LoadSamples(row.first, x, row.width);
    const auto second = LoadSamples(row.second, x, row.width);
    const auto a = hn::ConvertTo(d, first);
    const auto b = hn::ConvertTo(d, second);

    ColumnSums sums;
    const auto load = [=](const float* kept) HWY_ATTR { return hn::BitCast(integers, hn::Load(d, kept)); };
    const auto samples = hn::Add(load(row.above + x), hn::Add(first, hn::ShiftLeft<16>(second)));
    sums.samples = hn::Sub(samples, load(row.sums + x));
    hn::Store(hn::BitCast(d, samples), d, row.sums + x);

    const Vector products[] = {hn::Mul(a, a), hn::Mul(b, b), hn::Mul(a, b)};
    for (int k = 0; k < FlatWalk::kQuantities - 1; ++k) {
        const std::ptrdiff_t offset = (k + 1) * row.quantityFloats + x;
        const auto sum = hn::Add(hn::Load(d, row.above + offset), products[k]);
        sums.products[k] = hn::Sub(sum, hn::Load(d, row.sums + offset));
        hn::Store(sum, d, row.sums + offset);
    }
    return sums;
}

// Adds the rows y to y + 7 to the sums of the columns.
void SumEightRows(const BytePictures& pictures, int y, float* HWY_RESTRICT sums, int quantityFloats) {
    const Floats d;
    const Integers integers;
    for (int x = 0; x < pictures.width; x += kLanes) {
        auto samples = hn::BitCast(integers, hn::Load(d, sums + x));
        auto firstSquares = hn::Load(d, sums + quantityFloats + x);
        auto secondSquares = hn::Load(d, sums + 2 * quantityFloats + x);
        auto products = hn::Load(d, sums + 3 * quantityFloats + x);
        for (int i = y; i < y + kFlatWindow; ++i) {
            const auto first = LoadSamples(pictures.first + pictures.firstStride * i, x, pictures.width);
            const auto second = LoadSamples(pictures.second + pictures.secondStride * i, x, pictures.width);
            const auto a = hn::ConvertTo(d, first);
            const auto b = hn::ConvertTo(d, second);
            samples = hn::Add(samples, hn::Add(first, hn::ShiftLeft<16>(second)));
            firstSquares = hn::Add(firstSquares, hn::Mul(a, a));
            secondSquares = hn::Add(secondSquares, hn::Mul(b, b));
            products = hn::Add(products, hn::Mul(a, b));
        }
        hn::Store(hn::BitCast(d, samples), d, sums + x);
        hn::Store(firstSquares, d, sums + quantityFloats + x);
        hn::Store(secondSquares, d, sums + 2 * quantityFloats + x);
        hn::Store(products, d, sums + 3 * quantityFloats + x);
    }
}

void SkipRow(const FlatRow& row) {
    for (int x = 0; x < row.width; x += kLanes) SumColumns(row, x);
}

template <class ValuesOf>
HWY_INLINE void MapRow(const FlatRow row, const ValuesOf& valuesOf, float* HWY_RESTRICT values) {
    const Floats d;
    const Integers integers;
    EightWide<Integers> samples;
    EightWide<Floats> firstSquares, secondSquares, products;
    for (int x = 0; x < row.width; x += kLanes) {
        const ColumnSums columns = SumColumns(row, x);
        const auto both = samples.Next(columns.samples);
        const auto second =
            hn::BitCast(integers, hn::ShiftRight<16>(hn::BitCast(hn::RebindToUnsigned<Integers>(), both)));
        const Vector window[kWindowSums] = {hn::ConvertTo(d, hn::And(both, hn::Set(integers, 0xFFFF))),
                                            hn::ConvertTo(d, second), firstSquares.Next(columns.products[0]),
                                            secondSquares.Next(columns.products[1]),
                                            products.Next(columns.products[2])};
        hn::Store(valuesOf(window), d, values + x);
    }
}

void SSIMRow(const FlatRow& row, float c1, float c2, float* values) {
    MapRow(row, FlatSSIMOf{c1, c2}, values);
}

void ContrastStructureRow(const FlatRow& row, float c2, float* values) {
    MapRow(row, FlatContrastStructureOf{c2}, values);
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

namespace {

HWY_EXPORT(SumEightRows);
HWY_EXPORT(SkipRow);
HWY_EXPORT(SSIMRow);
HWY_EXPORT(ContrastStructureRow);

}  // namespace

FlatWalk::FlatWalk(const BytePictures& bytePictures, int first, void* workMemory)
    : pictures(bytePictures), memory(static_cast<float*>(workMemory)) {
    std::memset(memory, 0, MemoryBytes(pictures.width));
    // The first window sees the sums after row first - 1 and those below it.
    for (; y + kFlatWindow < first; y += kFlatWindow)
        HWY_DYNAMIC_DISPATCH(SumEightRows)(pictures, y, SumsOf(y - 1), RowFloats(pictures.width));
    while (y < first + kFlatWindow - 1) HWY_DYNAMIC_DISPATCH(SkipRow)(TakeRow());
}

void FlatWalk::NextSSIM(float c1, float c2, float* values) {
    HWY_DYNAMIC_DISPATCH(SSIMRow)(TakeRow(), c1, c2, values);
}

void FlatWalk::NextContrastStructure(float c2, float* values) {
    HWY_DYNAMIC_DISPATCH(ContrastStructureRow)(TakeRow(), c2, values);
}

FlatWalk::Row FlatWalk::TakeRow() {
    const Row row = {pictures.first + pictures.firstStride * y,
                     pictures.second + pictures.secondStride * y,
                     SumsOf(y - 1),
                     SumsOf(y),
                     RowFloats(pictures.width),
                     pictures.width};
    ++y;
    return row;
}

// A row keeps its sums where the row 8 above had them.
float* FlatWalk::SumsOf(int row) const {
    return memory +
           std::ptrdiff_t{(row + kFlatWindow) % kFlatWindow} * kQuantities * RowFloats(pictures.width);
}

std::size_t FlatWalk::MemoryBytes(int width) {
    return sizeof(float) * static_cast<std::size_t>(kFlatWindow * kQuantities) *
           static_cast<std::size_t>(RowFloats(width));
}

}  // namespace Kernels
#endif
