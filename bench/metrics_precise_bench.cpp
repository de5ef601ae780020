/// The SSIM metrics with a Gaussian window on 1920x1080 frames of a coded luma, with 1 and 2 threads.
/// "bytes_per_second" counts both planes once.

#include <benchmark/benchmark.h>
#include <omp.h>

#include <cstdint>
#include <vector>

#include "bench/scene.h"
#include "metrics/msssim_precise.h"
#include "metrics/ssim_precise.h"
#include "metrics/three_ssim.h"
#include "video/video_image.h"

namespace {

using namespace Metric;

// Calls measure(metric, images) with teams of state.range(0) threads.
template <class Measured, class Measure>
void MeasureFrames(benchmark::State& state, const Measure& measure) {
    const int threads = omp_get_max_threads();
    omp_set_num_threads(static_cast<int>(state.range(0)));
    const auto original = SceneFrame(1);
    const auto coded = SceneFrame(9);
    MetricParameters parameters;
    parameters.width = kWidth;
    parameters.height = kHeight;
    Measured metric(parameters);
    const std::vector<CMetricImage*> images = {original.get(), coded.get()};
    for (auto unused : state) measure(metric, images);
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * 2 * kWidth * kHeight * std::int64_t{sizeof(float)});
    omp_set_num_threads(threads);
}

template <class Measured>
void MeasureAlone(benchmark::State& state) {
    MeasureFrames<Measured>(state, [](Measured& metric, const std::vector<CMetricImage*>& images) {
        benchmark::DoNotOptimize(metric.Measure(images));
    });
}

template <class Measured>
void WithPicture(benchmark::State& state) {
    rkVideoImage target;
    target.Create(kWidth, kHeight, RGB24, 0);
    MeasureFrames<Measured>(state, [&](Measured& metric, const std::vector<CMetricImage*>& images) {
        benchmark::DoNotOptimize(metric.MeasureAndVisualize(images, target));
    });
}

#define METRIC_BENCHMARK(measure, name) \
    BENCHMARK(measure)                  \
        ->Name("metrics/" name)         \
        ->ArgName("threads")            \
        ->Arg(1)                        \
        ->Arg(2)                        \
        ->UseRealTime()                 \
        ->Unit(benchmark::kMillisecond)

METRIC_BENCHMARK(MeasureAlone<CSSIMMetricIpp>, "SSIM (precise)");
METRIC_BENCHMARK(MeasureAlone<C3SSIMMetricIpp>, "3SSIM");
METRIC_BENCHMARK(MeasureAlone<CMSSSIMMetricIpp>, "MSSSIM (precise)");
METRIC_BENCHMARK(WithPicture<CSSIMMetricIpp>, "SSIM (precise), painted");
METRIC_BENCHMARK(WithPicture<C3SSIMMetricIpp>, "3SSIM, painted");
METRIC_BENCHMARK(WithPicture<CMSSSIMMetricIpp>, "MSSSIM (precise), painted");

}  // namespace
