/// The GPU metrics on frames of each size: on the host that stands in for a card, and on the card if there is
/// one, with 1 and 2 threads beside it: whole frames, painted ones, and frames that are on the device already.
/// "bytes_per_second" counts both planes once, which is what a whole frame sends to the device.

#include <string>
#include <vector>

#include "bench/register.h"
#include "bench/scene.h"
#include "gpu/host_runtime.h"
#include "gpu/msssim_cuda.h"
#include "gpu/ssim_cuda.h"
#include "gpu/three_ssim_cuda.h"
#include "video/video_image.h"

namespace {

using namespace Metric;

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

struct Case {
    int width;
    int height;
    Course course;
};

template <class Measured>
void MeasureFrames(benchmark::State& state, const Gpu::GpuDevice& device, const Case& c) {
    SceneFrame original(c.width, c.height, 0, 1);
    SceneFrame coded(c.width, c.height, 0, 9);
    MetricParameters parameters;
    parameters.width = c.width;
    parameters.height = c.height;
    Resident<Measured> metric(device, parameters);
    rkVideoImage target;
    target.Create(c.width, c.height, RGB24, 0);
    const std::vector<CMetricImage*> images = {&original.image, &coded.image};
    metric.Measure(images);
    Repeat(state, {2.0 * c.width * c.height * sizeof(float)}, [&] {
        switch (c.course) {
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
    });
    state.SetItemsProcessed(state.iterations());
}

template <class Measured>
void Register(const std::string& name, const std::string& where, const Gpu::GpuDevice& device) {
    for (const auto& [width, height] : kSizes) {
        for (const auto& [course, suffix] : kCourses) {
            const Case c = {width, height, course};
            RegisterOnThreads("gpu/" + name + suffix + "/" + SizeName(width, height) + "/" + where,
                              [=](benchmark::State& state) { MeasureFrames<Measured>(state, device, c); });
        }
    }
}

void RegisterAll(const std::string& where, const Gpu::GpuDevice& device) {
    Register<CSSIMCUDAMetric>("SSIM", where, device);
    Register<CMSSSIMCUDAMetric>("MSSSIM", where, device);
    Register<C3SSIMCUDAMetric>("3SSIM", where, device);
}

}  // namespace

int main(int argc, char** argv) {
    Gpu::HostRuntime host;
    RegisterAll("host", {&host, 0});
    Gpu::GpuDevice card;
    if (Gpu::SelectGpuDevice(Gpu::DeviceRuntime(), card) > 0) RegisterAll("card", card);
    return RunRegistered(argc, argv);
}
