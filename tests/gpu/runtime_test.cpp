#include <gtest/gtest.h>

#include <new>
#include <random>

#include "gpu/reduction.h"
#include "tests/gpu/literal.h"
#include "tests/gpu/stub_runtime.h"

// What the measures on a GPU stand on: devices, textures, sums.

namespace Gpu {
namespace {

TEST(SelectGpuDevice, TakesTheFirstWithTheMostMultiprocessors) {
    const struct {
        const char* what;
        std::vector<int> multiProcessors;
        const char* failing;
        int result, index;  // -1: none is set
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

// Of the texels (10, 20), (30, 60), worked by hand from their centres at the halves.
TEST(HostTexture, ReadsBetweenAndBeyondTexels) {
    HostRuntime runtime;
    const CheckedGpu gpu({&runtime, 0}, "TEST");
    const float texels[] = {10, 20, 30, 60}, buffer[16] = {10, 20, 0, 0, 0, 0, 0, 0, 30, 60};
    TextureArray point(gpu, 1, 2, 2, TextureFilter::Point), linear(gpu, 1, 2, 2, TextureFilter::Linear);
    point.CopyFrom(texels, 2, 2, 2, kDefaultStream);
    linear.CopyFrom(texels, 2, 2, 2, kDefaultStream);
    const BufferTexture normalized(gpu, buffer, 2, 2, 8);
    constexpr struct {
        const char* what;
        float x, y, point, linear;
    } kCases[] = {
        {"centre", 1.5f, 0.5f, 20, 20},
        {"left of all", -4.5f, 1.5f, 30, 30},
        {"above and right", 7.5f, -0.5f, 20, 20},
        {"below", 0.5f, 2.5f, 30, 30},
        {"corner of four", 1, 1, 60, 30},
        {"a quarter of the way", 0.75f, 0.5f, 10, 12.5f},
        {"three quarters of both ways", 1.25f, 1.25f, 60, 43.75f},
        {"corner beyond the last row", 1, 2, 60, 45},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.point, ReadFloat(point.Texture(), c.x, c.y));
        EXPECT_EQ(c.linear, ReadFloat(linear.Texture(), c.x, c.y));
        EXPECT_EQ(c.linear, ReadFloat(normalized.Texture(), c.x / 2, c.y / 2));
    }
}

TEST(GpuLevel, RefusesMorePixelsThanCanBeCounted) {
    const GpuLevel level = MakeGpuLevel(32761, 65535);
    EXPECT_EQ(32768, level.alignedWidth);
    EXPECT_EQ(65536, level.alignedHeight);
    EXPECT_EQ(32761 * 65535, level.pixelCount);
    EXPECT_EQ(64, level.reduceBlocks);
    EXPECT_THROW(MakeGpuLevel(32768, 65536), std::bad_alloc);
}

// Values from 2^-12 to 2^12: the order of the additions shows.
std::vector<float> Values(int n) {
    std::mt19937 random(static_cast<unsigned>(n));
    std::vector<float> values;
    for (int i = 0; i < n; ++i) {
        const float fraction = static_cast<float>(random() & 0xFFFF) / 65536 - 0.25f;
        values.push_back(std::ldexp(fraction, static_cast<int>(random() % 25) - 12));
    }
    return values;
}

TEST(MapSum, AddsInTheGivenOrder) {
    HostRuntime runtime;
    const CheckedGpu gpu({&runtime, 0}, "TEST");
    MapSum sums(gpu, MakeGpuLevel(16, 16));
    for (const int n :
         {1,   2,   3,   4,   7,   8,   9,    16,   31,    32,    33,    64,    100,    128,
          255, 256, 257, 511, 512, 513, 1024, 5000, 32767, 32768, 32769, 65536, 100003, 1920 * 1080}) {
        SCOPED_TRACE(n);
        std::vector<float> values = Values(n);
        const float expected = Metric::Literal::Sum(values);
        values.push_back(1e30f);  // belongs to nobody
        const ReduceShape shape = ComputeReduceShape(n);
        EXPECT_EQ(expected, sums.SumOnGpu(n, shape.threads, shape.blocks, values.data(), kDefaultStream));
    }
}

TEST(MapSum, TakesTheLevelsOwnPositions) {
    HostRuntime runtime;
    const CheckedGpu gpu({&runtime, 0}, "TEST");
    for (const auto& [width, height] : {std::pair{104, 104}, {48, 40}, {1, 1}, {45, 23}}) {
        SCOPED_TRACE(width);
        const GpuLevel level = MakeGpuLevel(width, height);
        std::vector<float> map(level.AlignedCount(), 1e30f);
        const std::vector<float> values = Values(width * height);
        for (int y = 0; y < height; ++y)
            std::copy_n(values.begin() + y * width, width, map.begin() + y * level.alignedWidth);
        MapSum sums(gpu, level);
        EXPECT_EQ(Metric::Literal::Sum(values), sums.SumOfMap(level, map.data(), kDefaultStream));
        EXPECT_EQ(Metric::Literal::Mean({width, height, values}),
                  sums.MeanOfMap(level, map.data(), kDefaultStream));
    }
}

}  // namespace
}  // namespace Gpu
