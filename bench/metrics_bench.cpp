/// Every metric on frames of a drifting scene: sizes, bytes and samples of 10 bits, 1 and 2 threads, with and
/// without a painted picture. The planes that a metric reads are made before the clock starts; what making
/// them takes, frames_bench tells. "items_per_second" counts frames, "bytes_per_second" the samples of both.

#include <benchmark/benchmark.h>
#include <omp.h>

#include <cstdint>
#include <deque>
#include <string>
#include <utility>

#include "bench/register.h"
#include "bench/scene.h"
#include "metrics/blocking.h"
#include "metrics/blurring.h"
#include "metrics/delta.h"
#include "metrics/msad.h"
#include "metrics/mse.h"
#include "metrics/msssim_fast.h"
#include "metrics/msssim_precise.h"
#include "metrics/psnr.h"
#include "metrics/ssim_fast.h"
#include "metrics/ssim_precise.h"
#include "metrics/stssim.h"
#include "metrics/three_ssim.h"
#include "metrics/vqm.h"
#include "video/video_image.h"

namespace {

using namespace Metric;

struct Case {
    int width;
    int height;
    bool isDeep;
    bool paints;
};

// The frames go there and back, so that a metric with a memory always has work.
template <class Measured>
void MeasureFrames(benchmark::State& state, const Case& c) {
    constexpr int kFrames = 4;
    constexpr int kTurn = 2 * kFrames - 2;
    const int threads = omp_get_max_threads();
    omp_set_num_threads(static_cast<int>(state.range(0)));
    MetricParameters parameters;
    parameters.width = c.width;
    parameters.height = c.height;
    Measured metric(parameters);
    rkVideoImage target;
    target.Create(c.width, c.height, RGB24, 0);
    std::deque<SceneFrame> original, coded;
    for (int i = 0; i < kFrames; ++i) {
        original.emplace_back(c.width, c.height, i, 1, c.isDeep);
        coded.emplace_back(c.width, c.height, i, 9, c.isDeep);
    }
    int frame = 0;
    const auto measure = [&] {
        const int place = frame++ % kTurn;
        const auto shown = static_cast<std::size_t>(place < kFrames ? place : kTurn - place);
        CMetricImage* const first = &original[shown].image;
        CMetricImage* const second = &coded[shown].image;
        if (c.paints) {
            benchmark::DoNotOptimize(metric.MeasureAndVisualize({first, second}, target));
        } else {
            benchmark::DoNotOptimize(metric.Measure({first, second}));
        }
    };
    // Until planes are made and, in a metric with a memory, that is full.
    const int framesBefore = metric.GetId() == L"stssim" ? 33 : kFrames;
    for (int i = 0; i < framesBefore; ++i) measure();
    for (auto unused : state) measure();
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * 2 * c.width * c.height * (c.isDeep ? 2 : 1));
    omp_set_num_threads(threads);
}

}  // namespace

int main(int argc, char** argv) {
    const std::pair<const char*, void (*)(benchmark::State&, const Case&)> kMetrics[] = {
        {"PSNR", MeasureFrames<CPSNRMetric>},
        {"MSE", MeasureFrames<CMSEMetric>},
        {"MSAD", MeasureFrames<CMSADMetric>},
        {"Delta", MeasureFrames<CDeltaMetric>},
        {"SSIM (fast)", MeasureFrames<CSSIMMetric>},
        {"SSIM (precise)", MeasureFrames<CSSIMMetricIpp>},
        {"3SSIM", MeasureFrames<C3SSIMMetricIpp>},
        {"MSSSIM (fast)", MeasureFrames<CMSSSIMMetric>},
        {"MSSSIM (precise)", MeasureFrames<CMSSSIMMetricIpp>},
        {"stSSIM", MeasureFrames<CSTSSIMMetric>},
        {"VQM", MeasureFrames<CVQMMetric>},
        {"Blocking", MeasureFrames<CBlockingMetric>},
        {"Blurring", MeasureFrames<CBlurringMetric>},
    };
    for (const auto& [width, height] : kSizes) {
        for (const auto& [name, run] : kMetrics) {
            for (const bool isDeep : {false, true}) {
                for (const bool paints : {false, true}) {
                    const std::string what = std::string("metrics/") + name + "/" + std::to_string(width) +
                                             "x" + std::to_string(height) +
                                             (isDeep ? "/10 bits" : "/8 bits") + (paints ? "/painted" : "");
                    const Case c = {width, height, isDeep, paints};
                    RegisterOnThreads(what, [run = run, c](benchmark::State& state) { run(state, c); });
                }
            }
        }
    }
    return RunRegistered(argc, argv);
}
