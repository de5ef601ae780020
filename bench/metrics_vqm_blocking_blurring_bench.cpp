/// VQM, blocking and blurring on 1920x1080 frames of coded luma, with 1 and 2 threads.

#include <benchmark/benchmark.h>
#include <omp.h>

#include <vector>

#include "bench/scene.h"
#include "metrics/blocking.h"
#include "metrics/blurring.h"
#include "metrics/vqm.h"

namespace {

using namespace Metric;

template <class Measured>
void MeasureFrames(benchmark::State& state) {
    const int threads = omp_get_max_threads();
    omp_set_num_threads(static_cast<int>(state.range(0)));
    const auto original = SceneFrame(1);
    const auto coded = SceneFrame(9);
    MetricParameters parameters;
    parameters.width = kWidth;
    parameters.height = kHeight;
    Measured metric(parameters);
    const std::vector<CMetricImage*> images = {original.get(), coded.get()};
    for (auto unused : state) benchmark::DoNotOptimize(metric.Measure(images));
    omp_set_num_threads(threads);
}

#define METRIC_BENCHMARK(measured, name) \
    BENCHMARK(MeasureFrames<measured>)   \
        ->Name("metrics/" name)          \
        ->ArgName("threads")             \
        ->Arg(1)                         \
        ->Arg(2)                         \
        ->UseRealTime()                  \
        ->Unit(benchmark::kMillisecond)

METRIC_BENCHMARK(CVQMMetric, "VQM");
METRIC_BENCHMARK(CBlockingMetric, "Blocking");
METRIC_BENCHMARK(CBlurringMetric, "Blurring");

}  // namespace
