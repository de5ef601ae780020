#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "bench/limits.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include <cstddef>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace Limits::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

// In every round a product and a sum for each lane of each chain. Gives how many of either that makes a round.
std::int64_t Calculate(float* values, std::int64_t rounds) {
    constexpr int kChains = 12;
    const hn::CappedTag<float, 16> d;
    const auto factor = hn::Set(d, 0.5f);
    const auto summand = hn::Set(d, 1.0f);
    hn::Vec<decltype(d)> chains[kChains];
    for (auto& chain : chains) chain = hn::LoadU(d, values);
    for (std::int64_t i = 0; i < rounds; ++i)
        for (auto& chain : chains) chain = hn::Add(hn::Mul(chain, factor), summand);
    for (const auto& chain : chains) hn::StoreU(chain, d, values);
    return static_cast<std::int64_t>(hn::Lanes(d)) * kChains;
}

}  // namespace
}  // namespace Limits::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

#include "bench/limits.h"
#include "bench/team.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <map>
#include <utility>
#include <vector>

namespace Limits {

namespace {

HWY_EXPORT(Calculate);

// The fewest seconds that run() took, of some tries.
template <class Run>
double Fastest(const Run& run) {
    using Clock = std::chrono::steady_clock;
    constexpr int kFewestTries = 5;
    constexpr std::chrono::duration<double> kLongest(0.02);
    std::chrono::duration<double> fastest = std::chrono::hours(1);
    const auto begin = Clock::now();
    for (int i = 0; i < kFewestTries || Clock::now() - begin < kLongest; ++i) {
        const auto start = Clock::now();
        run();
        fastest = std::min<std::chrono::duration<double>>(fastest, Clock::now() - start);
    }
    return fastest.count();
}

// Of a copy, or of some products and sums, on a team of so many threads.
double MeasureCopy(std::int64_t bytes, int threads) {
    const TeamOf team(threads);
    const std::vector<std::uint8_t> source(static_cast<std::size_t>(std::max<std::int64_t>(bytes / 2, 1)), 1);
    std::vector<std::uint8_t> target(source.size());
    return static_cast<double>(2 * source.size()) / Fastest([&] {
               CopyOnTeam(source.data(), target.data(), source.size());
               benchmark::ClobberMemory();
           });
}

double MeasureArithmetic(int threads) {
    constexpr std::int64_t kProducts = 100'000'000;
    const TeamOf team(threads);
    return 2.0 * kProducts / Fastest([] { CalculateOnTeam(kProducts); });
}

}  // namespace

void CopyOnTeam(const void* source, void* target, std::size_t bytes) {
    ShareOut(static_cast<std::int64_t>(bytes), [&](std::int64_t first, std::int64_t end) {
        std::memcpy(static_cast<std::byte*>(target) + first, static_cast<const std::byte*>(source) + first,
                    static_cast<std::size_t>(end - first));
    });
}

void CalculateOnTeam(std::int64_t productsAndSums) {
    std::array<float, 16> probe = {};
    const std::int64_t ofRound = HWY_DYNAMIC_DISPATCH(Calculate)(probe.data(), 0);
    ShareOut(productsAndSums / ofRound, [](std::int64_t first, std::int64_t end) {
        std::array<float, 16> values = {};
        HWY_DYNAMIC_DISPATCH(Calculate)(values.data(), end - first);
        benchmark::DoNotOptimize(values);
    });
}

double CopyRate(std::int64_t bytes, int threads) {
    static std::map<std::pair<std::int64_t, int>, double> rates;
    if (threads < 1) return 0;
    double& rate = rates[{bytes, threads}];
    if (rate == 0) rate = std::max(MeasureCopy(bytes, threads), CopyRate(bytes, threads - 1));
    return rate;
}

double ArithmeticRate(int threads) {
    static std::map<int, double> rates;
    if (threads < 1) return 0;
    double& rate = rates[threads];
    if (rate == 0) rate = std::max(MeasureArithmetic(threads), ArithmeticRate(threads - 1));
    return rate;
}

}  // namespace Limits
#endif
