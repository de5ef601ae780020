/// The parts of stSSIM alone, at 1920x1080; the last number is the threads.

#include <benchmark/benchmark.h>
#include <omp.h>

#include <cstdint>
#include <vector>

#include "bench/scene.h"
#include "kernels/frame_tiles.h"
#include "kernels/plane.h"
#include "kernels/smallest.h"
#include "kernels/space_time_ssim.h"
#include "metrics/stssim_lines.h"

namespace {

using namespace Metric;

constexpr int kWidth = 1920;
constexpr int kHeight = 1088;

// Calls run() with teams of `threads`.
template <class Run>
void RunWith(benchmark::State& state, std::int64_t threads, const Run& run) {
    const int before = omp_get_max_threads();
    omp_set_num_threads(static_cast<int>(threads));
    for (auto unused : state) run();
    omp_set_num_threads(before);
}

Kernels::BytePlane MakeTiles(const Kernels::FrameTiles& layout) {
    Kernels::BytePlane tiles(static_cast<std::uint8_t*>(Kernels::AllocZeroed(layout.Bytes())));
    SceneFrame frame(kWidth, kHeight, 0, 3);
    for (int slot = 0; slot < layout.slots; ++slot)
        Kernels::StoreFrame(frame.image.GetY(), kWidth * 4, layout, slot, tiles.get());
    return tiles;
}

constexpr Kernels::FrameTiles kLayout = {kWidth, kHeight, Kernels::kWindowFrames};

void StoreFrames(benchmark::State& state) {
    SceneFrame frame(kWidth, kHeight, 0, 3);
    const Kernels::BytePlane tiles = MakeTiles(kLayout);
    int slot = 0;
    RunWith(state, state.range(0), [&] {
        Kernels::StoreFrame(frame.image.GetY(), kWidth * 4, kLayout, slot++ % kLayout.slots, tiles.get());
    });
}

void CompareOverTime(benchmark::State& state) {
    const Kernels::BytePlane first = MakeTiles(kLayout);
    const Kernels::BytePlane second = MakeTiles(kLayout);
    const Kernels::FloatPlane map = Kernels::MakeFloatPlane(kWidth, kHeight);
    const std::vector<Kernels::LineSet> lines(kWidth * kHeight / 16,
                                              static_cast<Kernels::LineSet>(state.range(0)));
    const Kernels::BytePlane scratch(
        static_cast<std::uint8_t*>(Kernels::AllocZeroed(Kernels::GetSpaceTimeScratchSize(kWidth, kHeight))));
    RunWith(state, state.range(1), [&] {
        Kernels::SpaceTimeSSIM({kLayout, first.get(), second.get(), 0}, 6.5025, 58.5225,
                               {map.get(), kWidth, kHeight, lines.data()}, scratch.get());
    });
}

void FindLines(benchmark::State& state) {
    SceneFrame first(kWidth, kHeight, 0, 1);
    SceneFrame second(kWidth, kHeight, 1, 1);
    MotionLines lines(kWidth, kHeight);
    lines.Push(second.image.GetY());
    RunWith(state, state.range(0), [&] {
        lines.Push(first.image.GetY());
        benchmark::DoNotOptimize(lines.Find());
        lines.Push(second.image.GetY());
    });
}

void PoolSmallest(benchmark::State& state) {
    SceneFrame frame(kWidth, kHeight, 0, 1);
    const Kernels::FloatPlane scratch = Kernels::MakeFloatPlane(kWidth, kHeight);
    RunWith(state, state.range(0), [&] {
        benchmark::DoNotOptimize(
            Kernels::MeanOfSmallest(frame.image.GetY(), kWidth * kHeight, kWidth * 65, scratch.get()));
    });
}

#define STSSIM_BENCHMARK(run, name) \
    BENCHMARK(run)->Name("metrics/" name)->UseRealTime()->Unit(benchmark::kMillisecond)

STSSIM_BENCHMARK(StoreFrames, "stSSIM, store a frame")->Arg(1)->Arg(2);
STSSIM_BENCHMARK(CompareOverTime, "stSSIM, compare over time, one line")->Args({0, 1})->Args({0, 2});
STSSIM_BENCHMARK(CompareOverTime, "stSSIM, compare over time, four lines")->Args({3, 1})->Args({3, 2});
STSSIM_BENCHMARK(FindLines, "stSSIM, motion")->Arg(1)->Arg(2);
STSSIM_BENCHMARK(PoolSmallest, "stSSIM, pool a map")->Arg(1)->Arg(2);

}  // namespace
