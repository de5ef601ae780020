#include <gtest/gtest.h>

#include "gpu/device.h"
#include "tests/gpu/stub_runtime.h"

namespace Gpu {
namespace {

TEST(SelectGpuDevice, TakesTheFirstWithTheMostMultiprocessors) {
    const struct {
        const char* what;
        std::vector<int> multiProcessors;
        const char* failing;
        int result;
        int index;  // -1: none is set
    } cases[] = {
        {"the greater behind", {14, 30}, "", 2, 1},
        {"the greater in front", {30, 14}, "", 2, 0},
        {"equals", {14, 20, 20}, "", 3, 1},
        {"none at all", {0, 0}, "", 2, 0},
        {"none in the first", {0, 1}, "", 2, 1},
        {"no device", {}, "", 0, -1},
        {"no count", {14}, "GetDeviceCount", -1, -1},
        {"unknown properties", {14, 30}, "GetMultiProcessorCount", 2, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        StubRuntime runtime(c.multiProcessors);
        runtime.failingName = c.failing;
        GpuDevice device = {nullptr, -1};
        EXPECT_EQ(c.result, SelectGpuDevice(&runtime, device));
        EXPECT_EQ(c.index, device.index);
        EXPECT_EQ(c.result > 0 ? &runtime : nullptr, device.runtime);
        for (const std::string& call : runtime.calls)
            EXPECT_EQ(0u, call.find("Get")) << call << " starts a device";
    }
    GpuDevice device;
    EXPECT_EQ(0, SelectGpuDevice(nullptr, device)) << "a build without a runtime";
}

TEST(IsUsable, IfTheDeviceTakesKernels) {
    for (const char* failing : {"", "SetDevice", "LoadKernels"}) {
        StubRuntime runtime({14, 30});
        runtime.failingName = failing;
        EXPECT_EQ(*failing == 0, IsUsable({&runtime, 1})) << failing;
        EXPECT_EQ(1, runtime.chosen);
    }
}

}  // namespace
}  // namespace Gpu
