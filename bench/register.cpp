#include "bench/register.h"

#include "bench/limits.h"
#include "bench/scene.h"
#include "kernels/machine.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

std::string Billions(double rateOfOne, double rateOfTwo, const char* unit) {
    char text[100];
    std::snprintf(text, sizeof text, "%.1f %s with 1 thread, %.1f with up to 2", rateOfOne * 1e-9, unit,
                  rateOfTwo * 1e-9);
    return text;
}

void TellLimits() {
    for (const auto& [width, height] : kSizes) {
        const std::int64_t bytes = std::int64_t{2} * width * height * std::int64_t{sizeof(float)};
        benchmark::AddCustomContext(
            "copying " + SizeName(width, height) + " floats",
            Billions(Limits::CopyRate(bytes, 1), Limits::CopyRate(bytes, 2), "GB/s read and written"));
    }
    benchmark::AddCustomContext("arithmetic", Billions(Limits::ArithmeticRate(1), Limits::ArithmeticRate(2),
                                                       "G/s products and sums of floats"));
}

}  // namespace

void TellRates(benchmark::State& state, const Work& work, double seconds) {
    const auto rounds = static_cast<double>(state.iterations());
    if (rounds == 0) return;  // it was skipped
    if (work.bytes > 0) {
        state.SetBytesProcessed(std::llround(rounds * work.bytes));
        state.counters["copying_percent"] = 100 * rounds * work.bytes / seconds /
                                            Limits::CopyRate(std::llround(work.bytes), ThreadsOf(state));
    }
    if (work.operations > 0) {
        state.counters["operations"] =
            benchmark::Counter(rounds * work.operations, benchmark::Counter::kIsRate);
        state.counters["arithmetic_percent"] =
            100 * rounds * work.operations / seconds / Limits::ArithmeticRate(ThreadsOf(state));
    }
}

int RunRegistered(int argc, char** argv) {
    Kernels::ChooseInstructionSet();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    TellLimits();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
