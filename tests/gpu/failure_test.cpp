#include <gtest/gtest.h>

#include <thread>

#include "gpu/msssim_cuda.h"
#include "gpu/ssim_cuda.h"
#include "gpu/three_ssim_cuda.h"
#include "tests/gpu/stub_runtime.h"
#include "tests/metrics/pictures.h"
#include "tests/metrics/scenes.h"

namespace Metric {
namespace {

using Gpu::StubRuntime;
using Calls = std::vector<std::string>;

/// Calls test.operator()<Measured>(name) for each of the metrics.
template <class Test>
void ForEachMetric(const Test& test) {
    test.template operator()<CSSIMCUDAMetric>("SSIM_CUDA");
    test.template operator()<CMSSSIMCUDAMetric>("MSSSIM_CUDA");
    test.template operator()<C3SSIMCUDAMetric>("3SSIM_CUDA");
}

/// Aligned to 48 by 32; similar enough for a mean above 0 on every level of MSSSIM.
const Scene kScene = {"", 40, 24, Coded};

/// A metric's whole life on one picture, with a visualization.
template <class Measured>
float Live(StubRuntime& runtime) {
    Measured metric({&runtime, runtime.chosen}, PictureSize(40, 24));
    Canvas canvas(40, 24);
    return metric.MeasureAndVisualize(PicturePair(kScene).Images(), canvas.picture)[0].value;
}

// Suites of this name run before those that wake teams of threads, which a child process doesn't have.
TEST(CudaFailureDeathTest, EveryFailureEndsTheProcess) {
    ForEachMetric([]<class Measured>(const std::string& sourceName) {
        StubRuntime whole;
        Live<Measured>(whole);
        ASSERT_GT(whole.calls.size(), 40u);
        for (std::size_t call = 0; call < whole.calls.size(); ++call) {
            SCOPED_TRACE(testing::Message() << sourceName << ", call " << call << " " << whole.calls[call]);
            const bool isSum = whole.calls[call] == "Memcpy" && whole.calls[call - 1] == "LaunchReduction";
            const std::string message = "^" + sourceName + R"(\([1-9][0-9]*\) : )" +
                                        (isSum ? "cudaSafeCallNoSync" : "cudaSafeCall") +
                                        R"(\(\) Runtime API error : out of memory\.)" + "\n$";
            StubRuntime runtime;
            runtime.failingCall = call;
            EXPECT_EXIT((Live<Measured>(runtime), std::exit(0)), testing::ExitedWithCode(255), message);
        }
    });
}

// A new thread starts with device 0, whatever was chosen before.
TEST(CudaMetrics, AnyThreadServes) {
    ForEachMetric([]<class Measured>(const char*) {
        StubRuntime one, two({1, 2});
        const float expected = Live<Measured>(one);
        Gpu::GpuDevice device;
        ASSERT_EQ(2, Gpu::SelectGpuDevice(&two, device));
        ASSERT_EQ(1, device.index);
        const PicturePair pictures(kScene);
        std::unique_ptr<Measured> metric;
        float value = 0;
        std::thread([&] { metric = std::make_unique<Measured>(device, PictureSize(40, 24)); }).join();
        std::thread([&] { value = metric->Measure(pictures.Images())[0].value; }).join();
        std::thread([&] { metric.reset(); }).join();
        EXPECT_EQ(expected, value);
    });
}

TEST(CudaMetrics, OnlyConstructionAllocates) {
    using Pair = std::pair<const char*, const char*>;
    const Pair kMakingAndGivingBack[] = {{"Malloc", "Free"},
                                         {"HostAlloc", "FreeHost"},
                                         {"MallocArray", "FreeArray"},
                                         {"CreateTexture", "DestroyTexture"},
                                         {"StreamCreate", "StreamDestroy"}};
    ForEachMetric([&]<class Measured>(const char*) {
        StubRuntime runtime;
        const auto image = NoisePicture(40, 24, 1);
        Canvas canvas(40, 24);
        auto metric = std::make_unique<Measured>(Gpu::GpuDevice{&runtime, 0}, PictureSize(40, 24));
        const Calls construction = std::exchange(runtime.calls, {});
        metric->Measure({image.get(), image.get()});
        metric->MeasureAndVisualize({image.get(), image.get()}, canvas.picture);
        const Calls frames = std::exchange(runtime.calls, {});
        metric.reset();
        const auto count = [](const Calls& calls, const std::string& name) {
            return std::count(calls.begin(), calls.end(), name);
        };
        for (const auto& [make, giveBack] : kMakingAndGivingBack) {
            SCOPED_TRACE(make);
            const auto alsoMade =
                count(construction, "CreateBufferTexture") * (make == std::string("CreateTexture"));
            EXPECT_EQ(count(construction, make) + alsoMade, count(runtime.calls, giveBack));
            EXPECT_EQ(0, count(frames, make) + count(frames, giveBack));
        }
    });
}

}  // namespace
}  // namespace Metric
