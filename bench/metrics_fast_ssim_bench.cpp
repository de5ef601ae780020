/// The fast SSIM metrics on 1920x1080 frames of a coded luma, a thread an instance: a metric forks no
/// threads, the engine runs several at once. "items_per_second" counts the frames of all threads;
/// "bytes_per_second" both planes once.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "bench/scene.h"
#include "metrics/msssim_fast.h"
#include "metrics/ssim_fast.h"
#include "video/video_image.h"

namespace {

using namespace Metric;

// Calls measure(metric, images) on an instance and on pictures of the thread's own.
template <class Measured, class Measure>
void MeasureFrames(benchmark::State& state, const Measure& measure) {
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
    BENCHMARK(measure)->Name("metrics/" name)->ThreadRange(1, 2)->UseRealTime()->Unit(benchmark::kMillisecond)

METRIC_BENCHMARK(MeasureAlone<CSSIMMetric>, "SSIM (fast)");
METRIC_BENCHMARK(MeasureAlone<CMSSSIMMetric>, "MSSSIM");
METRIC_BENCHMARK(WithPicture<CSSIMMetric>, "SSIM (fast), painted");
METRIC_BENCHMARK(WithPicture<CMSSSIMMetric>, "MSSSIM, painted");

}  // namespace
