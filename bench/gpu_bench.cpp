/// The GPU metrics on 1920x1080 frames: on the host that stands in for a card, with 1 and 2 threads, and on
/// the card if there is one: whole frames, painted ones, and frames that are on the device already.
/// "bytes_per_second" counts both planes once, which is what a whole frame sends to the device.

#include <benchmark/benchmark.h>
#include <omp.h>

#include <cstdint>
#include <string>
#include <vector>

#include "bench/scene.h"
#include "gpu/host_runtime.h"
#include "gpu/msssim_cuda.h"
#include "gpu/ssim_cuda.h"
#include "gpu/three_ssim_cuda.h"
#include "video/video_image.h"

namespace {

using namespace Metric;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

enum class Course { Whole, Painted, Resident };

constexpr struct {
    Course course;
    const char* name;
} kCourses[] = {
    {Course::Whole, ""}, {Course::Painted, ", painted"}, {Course::Resident, ", without the upload"}};

/// Measures the planes of the frame before once more.
template <class Measured>
struct Resident : Measured {
    using Measured::Measured;
    float MeasureAgain() { return this->MeasureFrame(false); }
};

template <class Measured>
void MeasureFrames(benchmark::State& state, const Gpu::GpuDevice& device, int threads, Course course) {
    const int threadsBefore = omp_get_max_threads();
    if (threads > 0) omp_set_num_threads(threads);
    SceneFrame original(kWidth, kHeight, 0, 1);
    SceneFrame coded(kWidth, kHeight, 0, 9);
    MetricParameters parameters;
    parameters.width = kWidth;
    parameters.height = kHeight;
    Resident<Measured> metric(device, parameters);
    rkVideoImage target;
    target.Create(kWidth, kHeight, RGB24, 0);
    const std::vector<CMetricImage*> images = {&original.image, &coded.image};
    metric.Measure(images);
    for (auto unused : state) {
        switch (course) {
            case Course::Whole:
                benchmark::DoNotOptimize(metric.Measure(images));
                break;
            case Course::Painted:
                benchmark::DoNotOptimize(metric.MeasureAndVisualize(images, target));
                break;
            case Course::Resident:
                benchmark::DoNotOptimize(metric.MeasureAgain());
                break;
        }
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * 2 * kWidth * kHeight * std::int64_t{sizeof(float)});
    omp_set_num_threads(threadsBefore);
}

template <class Measured>
void Register(const std::string& name, const std::string& where, const Gpu::GpuDevice& device, int threads) {
    for (const auto& [course, suffix] : kCourses) {
        benchmark::RegisterBenchmark(("gpu/" + name + suffix + where).c_str(),
                                     [=, course = course](benchmark::State& state) {
                                         MeasureFrames<Measured>(state, device, threads, course);
                                     })
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
    }
}

void RegisterAll(const std::string& where, const Gpu::GpuDevice& device, int threads) {
    Register<CSSIMCUDAMetric>("SSIM", where, device, threads);
    Register<CMSSSIMCUDAMetric>("MSSSIM", where, device, threads);
    Register<C3SSIMCUDAMetric>("3SSIM", where, device, threads);
}

}  // namespace

int main(int argc, char** argv) {
    Gpu::HostRuntime host;
    for (const int threads : {1, 2})
        RegisterAll("/host/threads:" + std::to_string(threads), {&host, 0}, threads);
    Gpu::GpuDevice card;
    if (Gpu::SelectGpuDevice(Gpu::DeviceRuntime(), card) > 0) RegisterAll("/card", card, 0);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
