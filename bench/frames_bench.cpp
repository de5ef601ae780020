/// The way of a frame to a metric's plane: every component from each kind of layout, and PSNR, which needs no
/// plane. "bytes_per_second" counts the frame's bytes that are looked at and the floats of one plane.

#include "bench/register.h"
#include "bench/scene.h"
#include "metric/convert_frame.h"
#include "metric/metric_image.h"
#include "metrics/psnr.h"
#include "video/color_space.h"
#include "video/video_image.h"

#include <benchmark/benchmark.h>
#include <omp.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace Metric;

/// A frame of noise and the image that is filled from it.
struct Frame {
    Frame(int layout, int width, int height, unsigned seed) : image(width, height) {
        frame.Create(width, height, layout, 0);
        std::vector<std::uint8_t> packed(frame.PackedFrameBytes());
        std::mt19937 random(seed);
        for (auto& byte : packed) byte = static_cast<std::uint8_t>(random());
        frame.LoadFrame(packed.data());
    }

    void Convert(int component) { ConvertFrame(frame, scratch[0], scratch[1], image, 0, component); }

    rkVideoImage frame;
    rkVideoImage scratch[2];
    CMetricImage image;
};

void ConvertCase(benchmark::State& state, int layout, int component, int width, int height) {
    const int threads = omp_get_max_threads();
    omp_set_num_threads(static_cast<int>(state.range(0)));
    Frame frame(layout, width, height, 1);
    for (auto unused : state) {
        frame.Convert(component);
        benchmark::DoNotOptimize(frame.image.GetPlane(component));
        benchmark::ClobberMemory();
    }
    const std::int64_t pixels = std::int64_t{width} * height;
    const auto packed = static_cast<std::int64_t>(frame.frame.PackedFrameBytes());
    const bool isLuma = component == ComponentY && rkPlaneShapeOf(layout).planes == 3 && rkIsYuv(layout);
    const std::int64_t read = isLuma ? pixels * (rkSampleBits(layout) > 8 ? 2 : 1) : packed;
    state.SetBytesProcessed(state.iterations() * (read + 4 * pixels));
    omp_set_num_threads(threads);
}

void PsnrCase(benchmark::State& state, int layout, int component, int width, int height) {
    const int threads = omp_get_max_threads();
    omp_set_num_threads(static_cast<int>(state.range(0)));
    Frame first(layout, width, height, 1), second(layout, width, height, 2);
    MetricParameters parameters;
    parameters.component = component;
    parameters.width = width;
    parameters.height = height;
    CPSNRMetric metric(parameters);
    for (auto unused : state) {
        first.Convert(component);
        second.Convert(component);
        benchmark::DoNotOptimize(metric.Measure({&first.image, &second.image})[0].value);
    }
    state.SetItemsProcessed(state.iterations());
    omp_set_num_threads(threads);
}

std::string Narrow(const wchar_t* text) {
    const std::wstring wide = text;
    return {wide.begin(), wide.end()};
}

}  // namespace

int main(int argc, char** argv) {
    constexpr struct {
        int layout;
        const char* name;
    } kLayouts[] = {{IYUV, "IYUV"},   {YV16, "YV16"}, {YUV, "YUV"},   {YUY2, "YUY2"},        {Y410, "Y410"},
                    {RGB24, "RGB24"}, {P010, "P010"}, {P416, "P416"}, {P416_RGB, "P416_RGB"}};
    for (const auto& [width, height] : kSizes) {
        const std::string size = std::to_string(width) + "x" + std::to_string(height);
        for (const auto& [layout, layoutName] : kLayouts) {
            for (const int component : {ComponentY, ComponentU, ComponentR, ComponentL}) {
                const std::string name =
                    std::string(layoutName) + " to " + Narrow(ComponentName(component)) + "/" + size;
                for (const auto& [what, run] :
                     {std::pair("frames/", &ConvertCase), {"frames/PSNR ", &PsnrCase}})
                    RegisterOnThreads(what + name, [=, run = run, layout = layout, width = width,
                                                    height = height](benchmark::State& state) {
                        run(state, layout, component, width, height);
                    });
            }
        }
    }
    return RunRegistered(argc, argv);
}
