#include "gpu/reduction.h"

#include <gtest/gtest.h>

#include <random>

#include "gpu/host_runtime.h"
#include "tests/gpu/literal.h"

namespace Gpu {
namespace {

using Metric::Literal::Sum;

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
          255, 256, 257, 511, 512, 513, 1024, 5000, 32767, 32768, 32769, 65536, 100003, 1 << 18}) {
        SCOPED_TRACE(n);
        std::vector<float> values = Values(n);
        const float expected = Sum(values);
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
        EXPECT_EQ(Sum(values), sums.SumOfMap(level, map.data(), kDefaultStream));
        EXPECT_EQ(Metric::Literal::Mean({width, height, values}),
                  sums.MeanOfMap(level, map.data(), kDefaultStream));
    }
}

TEST(MapSum, OtherNumbersOfThreadsLaunchNothing) {
    HostRuntime runtime;
    float values[2] = {1, 2}, sum = 77;
    for (const int threads : {0, 3, 1024})
        EXPECT_EQ(kSuccess, runtime.LaunchReduction({values, &sum, 2, threads, 1}, {}));
    EXPECT_EQ(77, sum);
}

}  // namespace
}  // namespace Gpu
