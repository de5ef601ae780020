/// What this machine allows, for the other benchmarks to be held against: bytes copied, floats read and
/// written, and additions and multiplications, a pixel of each size, with 1 and 2 threads.

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "bench/limits_bench.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstddef>

HWY_BEFORE_NAMESPACE();
namespace Limits::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// A product and a sum for every lane, in as many chains as keep all units busy. Gives how many of either it
// made.
std::size_t Calculate(float* values, int rounds) {
    constexpr int kChains = 12;
    const hn::CappedTag<float, 16> d;
    const auto factor = hn::Set(d, 0.5f);
    const auto summand = hn::Set(d, 1.0f);
    hn::Vec<decltype(d)> chains[kChains];
    for (auto& chain : chains) chain = hn::LoadU(d, values);
    for (int i = 0; i < rounds; ++i)
        for (auto& chain : chains) chain = hn::Add(hn::Mul(chain, factor), summand);
    for (const auto& chain : chains) hn::StoreU(chain, d, values);
    return hn::Lanes(d) * kChains * static_cast<std::size_t>(rounds);
}

}  // namespace
}  // namespace Limits::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

#include <benchmark/benchmark.h>
#include <omp.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "bench/register.h"
#include "bench/scene.h"

namespace Limits {
namespace {

HWY_EXPORT(Calculate);

// Calls run(first, end), shares of so many things, on a team.
template <class Run>
void OnTeam(benchmark::State& state, std::int64_t count, const Run& run) {
    const int threads = omp_get_max_threads();
    omp_set_num_threads(static_cast<int>(state.range(0)));
    for (auto unused : state) {
#pragma omp parallel
        {
            const std::int64_t thread = omp_get_thread_num();
            const std::int64_t team = omp_get_num_threads();
            run(count * thread / team, count * (thread + 1) / team);
        }
        benchmark::ClobberMemory();
    }
    omp_set_num_threads(threads);
}

template <class Sample>
void Copy(benchmark::State& state, std::int64_t pixels) {
    const std::vector<Sample> source(static_cast<std::size_t>(pixels), Sample{1});
    std::vector<Sample> target(source.size());
    OnTeam(state, pixels, [&](std::int64_t first, std::int64_t end) {
        std::memcpy(target.data() + first, source.data() + first,
                    static_cast<std::size_t>(end - first) * sizeof(Sample));
    });
    state.SetBytesProcessed(state.iterations() * pixels * 2 * std::int64_t{sizeof(Sample)});
}

// Each sum needs the one before, as in values that are defined by the order of their additions.
void AddInAChain(benchmark::State& state, std::int64_t pixels) {
    const std::vector<float> values(static_cast<std::size_t>(pixels), 0.5f);
    OnTeam(state, pixels, [&](std::int64_t first, std::int64_t end) {
        float sum = 0;
        for (std::int64_t i = first; i < end; ++i) sum += values[static_cast<std::size_t>(i)];
        benchmark::DoNotOptimize(sum);
    });
    state.SetItemsProcessed(state.iterations() * pixels);
}

// A hundred products and as many sums a pixel.
void CalculateWithVectors(benchmark::State& state, std::int64_t pixels) {
    constexpr std::int64_t kOperations = 100;
    std::array<float, 16> one = {};
    const auto atOnce = static_cast<std::int64_t>(HWY_DYNAMIC_DISPATCH(Calculate)(one.data(), 1));
    OnTeam(state, pixels * kOperations / atOnce, [&](std::int64_t first, std::int64_t end) {
        std::array<float, 16> values = {};
        benchmark::DoNotOptimize(
            HWY_DYNAMIC_DISPATCH(Calculate)(values.data(), static_cast<int>(end - first)));
        benchmark::DoNotOptimize(values);
    });
    state.SetItemsProcessed(state.iterations() * pixels * 2 * kOperations);
}

}  // namespace
}  // namespace Limits

int main(int argc, char** argv) {
    const std::pair<const char*, void (*)(benchmark::State&, std::int64_t)> kLimits[] = {
        {"copy bytes", Limits::Copy<std::uint8_t>},
        {"copy floats", Limits::Copy<float>},
        {"chain of additions", Limits::AddInAChain},
        {"100 products and 100 sums", Limits::CalculateWithVectors},
    };
    for (const auto& [width, height] : kSizes) {
        for (const auto& [name, run] : kLimits) {
            const std::string what =
                std::string("limits/") + name + "/" + std::to_string(width) + "x" + std::to_string(height);
            const std::int64_t pixels = std::int64_t{width} * height;
            RegisterOnThreads(what, [run = run, pixels](benchmark::State& state) { run(state, pixels); });
        }
    }
    return RunRegistered(argc, argv);
}
#endif
