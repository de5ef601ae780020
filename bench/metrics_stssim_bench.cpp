/// stSSIM on a drifting luma, with 1 and 2 threads, at 352x288 and 1920x1080. The frames differ, so that the
/// estimator has work; the history is full before the clock starts. Behind it its parts alone at 1920x1080,
/// the last number being the threads.

#include <benchmark/benchmark.h>
#include <omp.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "kernels/frame_tiles.h"
#include "kernels/plane.h"
#include "kernels/smallest.h"
#include "kernels/space_time_ssim.h"
#include "metrics/stssim.h"
#include "metrics/stssim_lines.h"

namespace {

using namespace Metric;

std::unique_ptr<CMetricImage> Frame(int width, int height, int number, int coarseness) {
    auto image = std::make_unique<CMetricImage>(width, height);
    float* sample = image->GetY();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int drift = x + 2 * number;
            const int scene = x < width / 3
                                  ? (x * y / 512 + x / 3 + 2 * y) % 220
                                  : (drift * y / 512 + drift / 3 + 2 * y + (drift * 31 ^ y * 17) % 13) % 220;
            *sample++ = static_cast<float>(scene / coarseness * coarseness + (x / 8 + y / 8) % coarseness);
        }
    }
    return image;
}

void MeasureFrames(benchmark::State& state) {
    constexpr int kFrames = 4;
    const int threads = omp_get_max_threads();
    omp_set_num_threads(static_cast<int>(state.range(2)));
    MetricParameters parameters;
    parameters.width = static_cast<int>(state.range(0));
    parameters.height = static_cast<int>(state.range(1));
    std::vector<std::unique_ptr<CMetricImage>> first, second;
    for (int i = 0; i < kFrames; ++i) {
        first.push_back(Frame(parameters.width, parameters.height, i, 1));
        second.push_back(Frame(parameters.width, parameters.height, i, 9));
    }
    CSTSSIMMetric metric(parameters);
    std::size_t frame = 0;
    const auto measure = [&] {
        const std::size_t place = frame++ % (2 * kFrames - 2);  // there and back
        const std::size_t shown = place < kFrames ? place : 2 * kFrames - 2 - place;
        benchmark::DoNotOptimize(metric.Measure({first[shown].get(), second[shown].get()}));
    };
    for (int i = 0; i < 33; ++i) measure();
    for (auto unused : state) measure();
    state.SetItemsProcessed(state.iterations());
    omp_set_num_threads(threads);
}

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
    const auto frame = Frame(kWidth, kHeight, 0, 3);
    for (int slot = 0; slot < layout.slots; ++slot)
        Kernels::StoreFrame(frame->GetY(), kWidth * 4, layout, slot, tiles.get());
    return tiles;
}

constexpr Kernels::FrameTiles kLayout = {kWidth, kHeight, Kernels::kWindowFrames};

void StoreFrames(benchmark::State& state) {
    const auto frame = Frame(kWidth, kHeight, 0, 3);
    const Kernels::BytePlane tiles = MakeTiles(kLayout);
    int slot = 0;
    RunWith(state, state.range(0), [&] {
        Kernels::StoreFrame(frame->GetY(), kWidth * 4, kLayout, slot++ % kLayout.slots, tiles.get());
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
    const auto first = Frame(kWidth, kHeight, 0, 1);
    const auto second = Frame(kWidth, kHeight, 1, 1);
    MotionLines lines(kWidth, kHeight);
    lines.Push(second->GetY());
    RunWith(state, state.range(0), [&] {
        lines.Push(first->GetY());
        benchmark::DoNotOptimize(lines.Find());
        lines.Push(second->GetY());
    });
}

void PoolSmallest(benchmark::State& state) {
    const auto frame = Frame(kWidth, kHeight, 0, 1);
    const Kernels::FloatPlane scratch = Kernels::MakeFloatPlane(kWidth, kHeight);
    RunWith(state, state.range(0), [&] {
        benchmark::DoNotOptimize(
            Kernels::MeanOfSmallest(frame->GetY(), kWidth * kHeight, kWidth * 65, scratch.get()));
    });
}

#define STSSIM_BENCHMARK(run, name) \
    BENCHMARK(run)->Name("metrics/" name)->UseRealTime()->Unit(benchmark::kMillisecond)

STSSIM_BENCHMARK(MeasureFrames, "stSSIM")
    ->ArgsProduct({{352}, {288}, {1, 2}})
    ->ArgsProduct({{1920}, {1080}, {1, 2}});
STSSIM_BENCHMARK(StoreFrames, "stSSIM, store a frame")->Arg(1)->Arg(2);
STSSIM_BENCHMARK(CompareOverTime, "stSSIM, compare over time, one line")->Args({0, 1})->Args({0, 2});
STSSIM_BENCHMARK(CompareOverTime, "stSSIM, compare over time, four lines")->Args({3, 1})->Args({3, 2});
STSSIM_BENCHMARK(FindLines, "stSSIM, motion")->Arg(1)->Arg(2);
STSSIM_BENCHMARK(PoolSmallest, "stSSIM, pool a map")->Arg(1)->Arg(2);

}  // namespace
