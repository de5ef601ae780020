/// VQM, blocking and blurring on 1920x1080 frames of coded luma, with 1 and 2 threads.

#include <benchmark/benchmark.h>
#include <omp.h>

#include <memory>
#include <vector>

#include "metrics/blocking.h"
#include "metrics/blurring.h"
#include "metrics/vqm.h"

namespace {

using namespace Metric;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

std::unique_ptr<CMetricImage> Frame(int coarseness) {
    auto image = std::make_unique<CMetricImage>(kWidth, kHeight);
    float* sample = image->GetY();
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const int scene = (x * y / 512 + x / 3 + 2 * y + (x * 31 ^ y * 17) % 13) % 220;
            const int coded = scene / coarseness * coarseness + (x / 8 + y / 8) % coarseness;
            *sample++ = static_cast<float>(coded);
        }
    }
    return image;
}

template <class Measured>
void MeasureFrames(benchmark::State& state) {
    const int threads = omp_get_max_threads();
    omp_set_num_threads(static_cast<int>(state.range(0)));
    const auto original = Frame(1);
    const auto coded = Frame(9);
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
