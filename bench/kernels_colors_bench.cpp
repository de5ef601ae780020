/// From samples to planes, between colours, and to pictures.

#include "bench/kernels_bench.h"
#include "kernels/color_rows.h"
#include "kernels/lightness_rows.h"
#include "kernels/painting.h"
#include "kernels/samples.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace {

using namespace Kernels;
using Planes = KernelPlanes;

// Interleaved bytes, or words, to numbers around 0.
template <int kUnitBytes, int kSampleBytes = 1, bool kInPairs = false>
void Load(const Planes& p) {
    const std::uint8_t* const samples = kSampleBytes == 2 ? p.words[0].get() : p.units.get();
    p.ForEachRow([&](int y) {
        const SampleRow row = {samples + std::ptrdiff_t{y} * p.width * kUnitBytes, kUnitBytes, 0,
                               kSampleBytes};
        LoadSamples(row, kInPairs, kSampleBytes == 2 ? 0.25f : 1, 128, p.ResultRow(y), p.width);
    });
}

void LoadThree(const Planes& p) {
    p.ForEachRow([&](int y) {
        float* const rows[] = {p.ResultRow(y, 0), p.ResultRow(y, 1), p.ResultRow(y, 2)};
        LoadTriples(p.units.get() + std::ptrdiff_t{y} * p.width * 3, rows, p.width);
    });
}

ColorRows ColorsOf(const Planes& p, int y) {
    return {p.RowOf(p.first, y), p.RowOf(p.second, y), p.RowOf(p.samples, y)};
}

void Sum(const Planes& p) {
    p.ForEachRow([&](int y) {
        SumRows(ColorsOf(p, y), {0.257f, 0.504f, 0.098f, 16}, p.ResultRow(y), p.width);
    });
}

void SumLimited(const Planes& p) {
    p.ForEachRow([&](int y) {
        SumRowsLimited(ColorsOf(p, y), {16, 1.164f, -0.391f, -0.813f}, 255, p.ResultRow(y), p.width);
    });
}

// It doesn't matter to the clock what the table holds.
void LookUp(const Planes& p, const FloatPlane& values) {
    static const std::vector<float> table(static_cast<std::size_t>(kUnits) * kStepsPerUnit, 50.0f);
    p.ForEachRow([&](int y) {
        benchmark::DoNotOptimize(LookUpRow(table.data(), p.RowOf(values, y), p.ResultRow(y), p.width));
    });
}

std::vector<LightnessPoint> MakePoints() {
    std::vector<LightnessPoint> points(kLightnessPoints);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double luma = static_cast<double>(i) / kPointsPerUnit;
        points[i].power = LightnessFormula::kFactor *
                          std::pow(luma / LightnessFormula::kWhite, LightnessFormula::kExponent);
        points[i].inverse = 1 / luma;
    }
    return points;
}

void Lightness(const Planes& p) {
    static const std::vector<LightnessPoint> points = MakePoints();
    p.ForEachRow([&](int y) {
        benchmark::DoNotOptimize(
            LightnessNearPoints(points.data(), p.RowOf(p.first, y), p.ResultRow(y), p.width));
    });
}

void Spread(const Planes& p) {
    p.ForEachRow([&](int y) {
        const std::ptrdiff_t first = std::ptrdiff_t{y} * p.width;
        SpreadGreys(p.bytes[0].get() + first, p.width, p.picture.get() + 3 * first);
    });
}

constexpr KernelCase kKernels[] = {
    {"LoadSamples of bytes", 1 + 4, 1, Load<1>},  // centred
    {"LoadSamples of bytes, in pairs", 0.5 + 4, 1, Load<1, 1, true>},
    {"LoadSamples of one byte of 2", 2 + 4, 1, Load<2>},
    {"LoadSamples of one byte of 3", 3 + 4, 1, Load<3>},
    {"LoadSamples of one byte of 4", 4 + 4, 1, Load<4>},
    {"LoadSamples of words", 2 + 4, 2, Load<2, 2>},  // scaled and centred
    {"LoadSamples of words, in pairs", 1 + 4, 2, Load<2, 2, true>},
    {"LoadTriples", 3 + 12, 0, LoadThree},

    {"SumRows", 16, 6, Sum},
    {"SumRowsLimited", 16, 8, SumLimited},
    {"LookUpRow of bytes", 8, 0, [](const Planes& p) { LookUp(p, p.samples); }},
    {"LookUpRow of 10 bits", 8, 0, [](const Planes& p) { LookUp(p, p.deepSamples); }},
    {"LightnessNearPoints", 8, 0, Lightness},

    {"PaintGrey", 4 + 3, 0,
     [](const Planes& p) {
         PaintGrey(p.first.get(), p.stride, p.picture.get(), 3 * p.width, p.width, p.height);
     }},
    {"PaintSimilarity", 4 + 3, 2,
     [](const Planes& p) {
         PaintSimilarity(p.similarities.get(), p.stride, p.picture.get(), 3 * p.width, p.width, p.height);
     }},
    {"SpreadGreys", 1 + 3, 0, Spread},
};

}  // namespace

std::span<const KernelCase> ColorKernels() {
    return kKernels;
}
