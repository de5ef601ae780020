/// Vector code that belongs to one metric.

#include "bench/kept_for.h"
#include "bench/kernels_bench.h"
#include "metrics/blocking_line.h"
#include "metrics/msssim_greys.h"
#include "metrics/three_ssim_segments.h"
#include "metrics/vqm_blocks.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace {

using Planes = KernelPlanes;

void CompareBlocks(const Planes& p) {
    const Metric::VqmTables& tables = Metric::VqmTables::Get();
    Kernels::ForEachRow(p.width, p.height / Metric::kVqmBlockSize, [&](int row) {
        const int y = row * Metric::kVqmBlockSize;
        benchmark::DoNotOptimize(Metric::CompareVqmBlocks(tables, p.RowOf(p.first, y), p.RowOf(p.second, y),
                                                          p.width, p.ResultRow(y)));
    });
}

void FindSegments(const Planes& p) {
    const auto thresholds = Metric::ThresholdsOf(1e6f);
    Kernels::ForEachBand(p.width, p.height, [&](const Kernels::Band& band) {
        benchmark::DoNotOptimize(
            Metric::FindSegments({{p.first.get(), p.second.get()}, p.stride, p.width, p.height}, band,
                                 thresholds, p.picture.get()));
    });
}

void PaintSegments(const Planes& p) {
    p.ForEachRow([&](int y) {
        const std::ptrdiff_t first = std::ptrdiff_t{y} * p.width;
        Metric::PaintSegments(p.RowOf(p.similarities, y), p.classes.get() + first, p.width,
                              p.picture.get() + 3 * first);
    });
}

struct BlockLine {
    BlockLine(int width, int height)
        : line(std::max(width, height)), strengths(static_cast<std::size_t>(std::max(width, height))) {}

    Metric::GridLine line;
    std::vector<float> strengths;
};

// Takes the lines between blocks of either direction, and tells how visible they are.
template <bool kVertical>
void MeasureGrid(const Planes& p) {
    BlockLine& work = KeptFor<BlockLine>(p.width, p.height);
    const float* const bottomRow = p.RowOf(p.first, p.height - 1);
    for (int at = 7; at < (kVertical ? p.width : p.height) - 7; at += 8) {
        if (kVertical)
            work.line.TakeVertical(bottomRow, p.width, p.height, at);
        else
            work.line.TakeHorizontal(bottomRow, p.width, at);
        Metric::MeasureStrengths(work.line, 40, work.strengths.data());
    }
}

// What the rows of a painted level go through: the sums stay what they are.
struct LevelRows {
    explicit LevelRows(int width)
        : logarithms(static_cast<std::size_t>(width)),
          zeros(static_cast<std::size_t>(width)),
          sums(static_cast<std::size_t>(width), -0.5),
          greys(static_cast<std::size_t>(width)),
          unsure(static_cast<std::size_t>(width)) {}

    std::vector<double> logarithms;
    std::vector<double> zeros;
    std::vector<double> sums;
    std::vector<std::uint8_t> greys;
    std::vector<int> unsure;
};

void WeighLogarithms(const Planes& p) {
    LevelRows& rows = KeptFor<LevelRows>(p.width);
    for (int y = 0; y < p.height; ++y)
        Metric::WeighLogarithms(p.RowOf(p.similarities, y), p.width, 0.3, rows.logarithms.data());
}

void AddCoarser(const Planes& p) {
    LevelRows& rows = KeptFor<LevelRows>(p.width);
    for (int y = 0; y < p.height; ++y)
        Metric::AddCoarser(rows.zeros.data(), p.width / 2, p.width, rows.sums.data());
}

void GreysOfSums(const Planes& p) {
    LevelRows& rows = KeptFor<LevelRows>(p.width);
    for (int y = 0; y < p.height; ++y)
        benchmark::DoNotOptimize(
            Metric::GreysOfSums(rows.sums.data(), p.width, rows.greys.data(), rows.unsure.data()));
}

constexpr KernelCase kKernels[] = {
    // The transforms alone: of both pictures 8 products and 7 sums in either direction.
    {"VQM, CompareVqmBlocks", 8, 2 * 2 * (8 + 7), CompareBlocks},
    // Two filters and the sum of their squares of both pictures, three comparisons.
    {"3SSIM, FindSegments", 8 + 1, 2 * (7 + 7 + 3) + 3, FindSegments},
    {"3SSIM, PaintSegments", 4 + 1 + 3, 2, PaintSegments},
    {"Blocking, MeasureStrengths of vertical lines", 4. * 4 / 8, 0, MeasureGrid<true>, false},
    {"Blocking, MeasureStrengths of horizontal lines", 4. * 4 / 8, 0, MeasureGrid<false>, false},
    {"MSSSIM, WeighLogarithms", 4 + 8, 0, WeighLogarithms, false},
    {"MSSSIM, AddCoarser", 4 + 8 + 8, 1, AddCoarser, false},
    {"MSSSIM, GreysOfSums", 8 + 1, 0, GreysOfSums, false},
};

}  // namespace

std::span<const KernelCase> MetricKernels() {
    return kKernels;
}
