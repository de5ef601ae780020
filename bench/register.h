#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

/// Enters run(state) as the benchmark `name` with 1 and with 2 threads, which state.range(0) tells.
template <class Run>
void RegisterOnThreads(const std::string& name, Run run) {
    benchmark::RegisterBenchmark(name.c_str(), std::move(run))
        ->ArgName("threads")
        ->Arg(1)
        ->Arg(2)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

/// Runs what the command line asks for; the program's exit status.
inline int RunRegistered(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
