/// Every metric on frames of a drifting scene: sizes, bytes and samples of 10 bits, 1 and 2 threads, with and
/// without a painted picture. The planes that a metric reads are made before the clock starts; what making
/// them takes, frames_bench tells. "items_per_second" counts frames, "bytes_per_second" the samples of both,
/// "operations" what one scale's formula has for a pixel: where a metric works on several scales, or what it
/// does depends on the pictures, no number tells its operations.

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
    double operations;  // of a pixel
};

// The frames go there and back, so that a metric with a memory always has work.
template <class Measured>
void MeasureFrames(benchmark::State& state, const Case& c) {
    constexpr int kFrames = 4;
    constexpr int kTurn = 2 * kFrames - 2;
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
    const double pixels = double{1} * c.width * c.height;
    Repeat(state, {2 * pixels * (c.isDeep ? 2 : 1), c.operations * pixels}, measure);
    state.SetItemsProcessed(state.iterations());
}

}  // namespace

int main(int argc, char** argv) {
    // The operations are those of the kernels that make the values, where kernels_bench counts them.
    constexpr struct {
        const char* name;
        double operations;
        void (*run)(benchmark::State&, const Case&);
    } kMetrics[] = {
        {"PSNR", 3, MeasureFrames<CPSNRMetric>},
        {"MSE", 3, MeasureFrames<CMSEMetric>},
        {"MSAD", 3, MeasureFrames<CMSADMetric>},
        {"Delta", 2, MeasureFrames<CDeltaMetric>},
        {"SSIM (fast)", 44, MeasureFrames<CSSIMMetric>},
        {"SSIM (precise)", 231, MeasureFrames<CSSIMMetricIpp>},
        {"3SSIM", 0, MeasureFrames<C3SSIMMetricIpp>},
        {"MSSSIM (fast)", 0, MeasureFrames<CMSSSIMMetric>},
        {"MSSSIM (precise)", 0, MeasureFrames<CMSSSIMMetricIpp>},
        {"stSSIM", 0, MeasureFrames<CSTSSIMMetric>},
        {"VQM", 0, MeasureFrames<CVQMMetric>},
        {"Blocking", 0, MeasureFrames<CBlockingMetric>},
        {"Blurring", 0, MeasureFrames<CBlurringMetric>},
    };
    for (const auto& [width, height] : kSizes) {
        for (const auto& metric : kMetrics) {
            for (const bool isDeep : {false, true}) {
                for (const bool paints : {false, true}) {
                    const Case c = {width, height, isDeep, paints, metric.operations};
                    RegisterOnThreads("metrics/" + std::string(metric.name) + "/" + SizeName(width, height) +
                                          (isDeep ? "/10 bits" : "/8 bits") + (paints ? "/painted" : ""),
                                      [run = metric.run, c](benchmark::State& state) { run(state, c); });
                }
            }
        }
    }
    return RunRegistered(argc, argv);
}
