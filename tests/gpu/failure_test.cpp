#include <gtest/gtest.h>

#include <thread>

#include "gpu/msssim_cuda.h"
#include "gpu/ssim_cuda.h"
#include "gpu/three_ssim_cuda.h"
#include "tests/gpu/stub_runtime.h"
#include "tests/metrics/pictures.h"

namespace Metric {
namespace {

using Gpu::StubRuntime;

/// Similar enough for a mean above 0 on every level of MSSSIM.
struct Pictures {
    std::vector<CMetricImage*> Images() const { return {first.get(), second.get()}; }

    std::unique_ptr<CMetricImage> first =
        BytePicture(40, 24, [](int x, int y) { return (x * 37 + y * 91) % 200; });
    std::unique_ptr<CMetricImage> second =
        BytePicture(40, 24, [](int x, int y) { return (x * 37 + y * 91) % 200 + x % 9; });
};

/// A metric's whole life on one picture, with a visualization. 40 by 24 is aligned to 48 by 32.
template <class Measured>
float Live(StubRuntime& runtime) {
    const Pictures pictures;
    Measured metric({&runtime, runtime.chosen}, PictureSize(40, 24));
    Canvas canvas(40, 24);
    return metric.MeasureAndVisualize(pictures.Images(), canvas.picture)[0].value;
}

template <class Measured>
void ExpectEveryFailureEndsTheProcess(const std::string& sourceName) {
    StubRuntime whole;
    Live<Measured>(whole);
    ASSERT_GT(whole.calls.size(), 40u);
    for (std::size_t call = 0; call < whole.calls.size(); ++call) {
        SCOPED_TRACE(testing::Message() << sourceName << ", call " << call << " " << whole.calls[call]);
        const bool isSum = whole.calls[call] == "Memcpy" && whole.calls[call - 1] == "LaunchReduction";
        const std::string message = "^" + sourceName + R"(\([1-9][0-9]*\) : )" +
                                    (isSum ? "cudaSafeCallNoSync" : "cudaSafeCall") +
                                    R"(\(\) Runtime API error : out of memory\.)" + "\n$";
        EXPECT_EXIT(
            {
                StubRuntime runtime;
                runtime.failingCall = call;
                Live<Measured>(runtime);
                std::exit(0);
            },
            testing::ExitedWithCode(255), message);
    }
}

// Suites of this name run before those that wake teams of threads, which a child process doesn't have.
TEST(CudaFailureDeathTest, EveryFailureEndsTheProcess) {
    ExpectEveryFailureEndsTheProcess<CSSIMCUDAMetric>("SSIM_CUDA");
    ExpectEveryFailureEndsTheProcess<CMSSSIMCUDAMetric>("MSSSIM_CUDA");
    ExpectEveryFailureEndsTheProcess<C3SSIMCUDAMetric>("3SSIM_CUDA");
}

// A new thread starts with device 0, whatever was chosen before.
template <class Measured>
void ExpectAnyThreadServes() {
    StubRuntime one;
    const float expected = Live<Measured>(one);
    StubRuntime two({1, 2});
    Gpu::GpuDevice device;
    ASSERT_EQ(2, Gpu::SelectGpuDevice(&two, device));
    ASSERT_EQ(1, device.index);
    const Pictures pictures;
    std::unique_ptr<Measured> metric;
    float value = 0;
    std::thread([&] { metric = std::make_unique<Measured>(device, PictureSize(40, 24)); }).join();
    std::thread([&] { value = metric->Measure(pictures.Images())[0].value; }).join();
    std::thread([&] { metric.reset(); }).join();
    EXPECT_EQ(expected, value);
}

TEST(CudaMetrics, AnyThreadServes) {
    ExpectAnyThreadServes<CSSIMCUDAMetric>();
    ExpectAnyThreadServes<CMSSSIMCUDAMetric>();
    ExpectAnyThreadServes<C3SSIMCUDAMetric>();
}

const std::pair<const char*, const char*> kMakingAndGivingBack[] = {
    {"Malloc", "Free"},
    {"HostAlloc", "FreeHost"},
    {"MallocArray", "FreeArray"},
    {"CreateTexture", "DestroyTexture"},
    {"StreamCreate", "StreamDestroy"},
};

template <class Measured>
void ExpectOnlyConstructionAllocates() {
    StubRuntime runtime;
    const auto image = NoisePicture(40, 24, 1);
    Canvas canvas(40, 24);
    auto metric = std::make_unique<Measured>(Gpu::GpuDevice{&runtime, 0}, PictureSize(40, 24));
    const std::vector<std::string> construction = std::exchange(runtime.calls, {});
    metric->Measure({image.get(), image.get()});
    metric->MeasureAndVisualize({image.get(), image.get()}, canvas.picture);
    const std::vector<std::string> frames = std::exchange(runtime.calls, {});
    metric.reset();
    const auto count = [](const std::vector<std::string>& calls, const std::string& name) {
        return std::count(calls.begin(), calls.end(), name);
    };
    for (const auto& [make, giveBack] : kMakingAndGivingBack) {
        SCOPED_TRACE(make);
        const auto alsoMade =
            count(construction, "CreateBufferTexture") * (make == std::string("CreateTexture"));
        EXPECT_EQ(count(construction, make) + alsoMade, count(runtime.calls, giveBack));
        EXPECT_EQ(0, count(frames, make) + count(frames, giveBack));
    }
}

TEST(CudaMetrics, OnlyConstructionAllocates) {
    ExpectOnlyConstructionAllocates<CSSIMCUDAMetric>();
    ExpectOnlyConstructionAllocates<CMSSSIMCUDAMetric>();
    ExpectOnlyConstructionAllocates<C3SSIMCUDAMetric>();
}

}  // namespace
}  // namespace Metric
