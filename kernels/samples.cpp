#include "kernels/samples.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/samples.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <algorithm>
#include <cstddef>

HWY_BEFORE_NAMESPACE();
namespace Kernels::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::ScalableTag<float>;
using Ints = hn::RebindToSigned<Floats>;
using Words = hn::Rebind<std::uint16_t, Floats>;
using Bytes = hn::Rebind<std::uint8_t, Floats>;

// From so many samples, one a lane of `Words` (bytes in the lower half of it), to one a pixel.

template <class D>
HWY_INLINE auto LoadUnits(D d, const std::uint8_t* units) {
    return hn::LoadU(d, reinterpret_cast<const hn::TFromD<D>*>(units));
}

/// The samples from unit `first` on, as many as d has lanes of 16 bits.
template <int unitBytes, int sampleBytes, class D>
HWY_INLINE auto LoadWords(D d, const SampleRow& row, std::ptrdiff_t first) {
    const std::uint8_t* units = row.units + first * unitBytes;
    if constexpr (sampleBytes == 2) {
        return LoadUnits(d, units);
    } else if constexpr (unitBytes == 1) {
        return hn::PromoteTo(d, hn::LoadU(hn::Rebind<std::uint8_t, D>(), units));
    } else if constexpr (unitBytes == 2) {
        return hn::And(hn::ShiftRightSame(LoadUnits(d, units), 8 * row.offset), hn::Set(d, 255));
    } else {
        const hn::Rebind<std::uint32_t, D> wide;
        const auto shifted = hn::ShiftRightSame(LoadUnits(wide, units), 8 * row.offset);
        const auto bytes =
            hn::BitCast(hn::RebindToSigned<decltype(wide)>(), hn::And(shifted, hn::Set(wide, 255)));
        return hn::DemoteTo(d, bytes);
    }
}

/// The same, each sample in two lanes beside each other.
template <int unitBytes, int sampleBytes>
HWY_INLINE auto LoadWordPairs(const SampleRow& row, std::ptrdiff_t first) {
    const Words d;
    const hn::Half<Words> half;
    const hn::Rebind<std::uint32_t, decltype(half)> wide;
    const auto words = hn::PromoteTo(wide, LoadWords<unitBytes, sampleBytes>(half, row, first));
    return hn::BitCast(d, hn::Or(words, hn::ShiftLeft<16>(words)));
}

template <int unitBytes, int sampleBytes, bool inPairs>
void LoadRow(const SampleRow& row, float scale, float centre, float* HWY_RESTRICT pixels, int count) {
    const Floats d;
    const Words w;
    const int step = static_cast<int>(hn::Lanes(d));
    const auto factor = hn::Set(d, scale);
    const auto middle = hn::Set(d, centre);
    int x = 0;
    for (; x + step <= count; x += step) {
        hn::VFromD<Words> words;
        if constexpr (inPairs)
            words = LoadWordPairs<unitBytes, sampleBytes>(row, x / 2);
        else
            words = LoadWords<unitBytes, sampleBytes>(w, row, x);
        const auto values = hn::ConvertTo(d, hn::PromoteTo(Ints(), words));
        hn::StoreU(hn::Sub(hn::Mul(values, factor), middle), d, pixels + x);
    }
    for (; x < count; ++x) {
        const std::uint8_t* sample = row.units + std::ptrdiff_t{inPairs ? x / 2 : x} * unitBytes + row.offset;
        const int value = sampleBytes == 2 ? sample[0] | sample[1] << 8 : sample[0];
        pixels[x] = static_cast<float>(value) * scale - centre;
    }
}

constexpr int kTriplesAtOnce = 512;

/// Puts the bytes of `count` units of three, kTriplesAtOnce at most, into a row for each place in the unit.
/// The row of a place that isn't wanted is null.
void SplitTriples(const std::uint8_t* HWY_RESTRICT units, int count, std::uint8_t* const (&rows)[3]) {
    const hn::ScalableTag<std::uint8_t> d;
    const int step = static_cast<int>(hn::Lanes(d));
    int i = 0;
    for (; i + step <= count; i += step) {
        hn::VFromD<decltype(d)> triple[3];
        hn::LoadInterleaved3(d, units + i * 3, triple[0], triple[1], triple[2]);
        for (int place = 0; place < 3; ++place)
            if (rows[place] != nullptr) hn::StoreU(triple[place], d, rows[place] + i);
    }
    for (; i < count; ++i)
        for (int place = 0; place < 3; ++place)
            if (rows[place] != nullptr) rows[place][i] = units[i * 3 + place];
}

/// One byte of each unit of three, a bufferful at a time, which then are a row of single bytes.
void LoadOneOfTriples(const SampleRow& row, bool inPairs, float scale, float centre,
                      float* HWY_RESTRICT pixels, int count) {
    HWY_ALIGN std::uint8_t bytes[kTriplesAtOnce];
    std::uint8_t* rows[3] = {};
    rows[row.offset] = bytes;
    const int samples = inPairs ? (count + 1) / 2 : count;
    const auto load = inPairs ? LoadRow<1, 1, true> : LoadRow<1, 1, false>;
    for (int first = 0; first < samples; first += kTriplesAtOnce) {
        const int some = std::min(kTriplesAtOnce, samples - first);
        SplitTriples(row.units + std::ptrdiff_t{first} * 3, some, rows);
        const int x = inPairs ? 2 * first : first;
        load({bytes, 1, 0, 1}, scale, centre, pixels + x, std::min(count - x, inPairs ? 2 * some : some));
    }
}

void LoadAllOfTriples(const std::uint8_t* units, float* const (&pixels)[3], int count) {
    HWY_ALIGN std::uint8_t bytes[3][kTriplesAtOnce];
    for (int x = 0; x < count; x += kTriplesAtOnce) {
        const int some = std::min(kTriplesAtOnce, count - x);
        SplitTriples(units + std::ptrdiff_t{x} * 3, some, {bytes[0], bytes[1], bytes[2]});
        for (int place = 0; place < 3; ++place)
            LoadRow<1, 1, false>({bytes[place], 1, 0, 1}, 1, 0, pixels[place] + x, some);
    }
}

void LoadAnyRow(const SampleRow& row, bool inPairs, float scale, float centre, float* pixels, int count) {
    if (row.unitBytes == 3) return LoadOneOfTriples(row, inPairs, scale, centre, pixels, count);

    const auto load = [&](auto single, auto pairs) {
        (inPairs ? pairs : single)(row, scale, centre, pixels, count);
    };
    if (row.sampleBytes == 2)
        load(LoadRow<2, 2, false>, LoadRow<2, 2, true>);
    else if (row.unitBytes == 1)
        load(LoadRow<1, 1, false>, LoadRow<1, 1, true>);
    else if (row.unitBytes == 2)
        load(LoadRow<2, 1, false>, LoadRow<2, 1, true>);
    else
        load(LoadRow<4, 1, false>, LoadRow<4, 1, true>);
}

}  // namespace
}  // namespace Kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace Kernels {

HWY_EXPORT(LoadAnyRow);
HWY_EXPORT(LoadAllOfTriples);

void LoadSamples(const SampleRow& samples, bool inPairs, float scale, float centre, float* pixels,
                 int count) {
    HWY_DYNAMIC_DISPATCH(LoadAnyRow)(samples, inPairs, scale, centre, pixels, count);
}

void LoadTriples(const std::uint8_t* units, float* const (&pixels)[3], int count) {
    HWY_DYNAMIC_DISPATCH(LoadAllOfTriples)(units, pixels, count);
}

}  // namespace Kernels
#endif
