#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <utility>

#include "bench/team.h"

/// What a round of a benchmark does at the least, as what it computes is defined and not as it is done: bytes
/// read and written; sums, differences, products, quotients, roots, absolute values and comparisons of numbers.
/// 0 where nobody can say.
struct Work {
    double bytes = 0;
    double operations = 0;
};

inline std::string SizeName(int width, int height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

inline int ThreadsOf(const benchmark::State& state) {
    return static_cast<int>(state.range(0));
}

/// Enters run(state) as the benchmark `name` with 1 thread and, if teams share it, with 2: `ThreadsOf` tells.
template <class Run>
void RegisterOnThreads(const std::string& name, Run run, bool isForTeams = true) {
    auto* const entered = benchmark::RegisterBenchmark(name.c_str(), std::move(run));
    entered->ArgName("threads")->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
    if (isForTeams) entered->Arg(2);
}

/// Adds what a second holds of the work, "bytes_per_second" and "operations", and what part that is of what the
/// machine copies (bytes as many, which may be outdone where less is written than read) and calculates (products
/// and sums of floats) on up to as many threads: "copying_percent" and "arithmetic_percent".
void TellRates(benchmark::State& state, const Work& work, double seconds);

/// Times run() on teams of the benchmark's threads, each round of which is this work; after a first one that
/// touches the memory and isn't timed.
template <class Run>
void Repeat(benchmark::State& state, const Work& work, const Run& run) {
    const TeamOf team(ThreadsOf(state));
    run();
    const auto begin = std::chrono::steady_clock::now();
    for (auto unused : state) {
        run();
        benchmark::ClobberMemory();
    }
    TellRates(state, work, std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
}

/// Runs what the command line asks for, above it what the machine allows; the program's exit status.
int RunRegistered(int argc, char** argv);
