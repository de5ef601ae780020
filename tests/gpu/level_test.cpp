#include "gpu/level.h"

#include <gtest/gtest.h>

#include <new>

namespace Gpu {
namespace {

TEST(GpuLevel, IsAlignedTo16) {
    constexpr struct {
        int width, height, alignedWidth, alignedHeight;
    } kCases[] = {
        {352, 288, 352, 288}, {1920, 1080, 1920, 1088}, {176, 144, 176, 144}, {104, 104, 112, 112},
        {720, 576, 720, 576}, {1, 1, 16, 16},           {16, 17, 16, 32},     {3840, 2160, 3840, 2160},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.width << "x" << c.height);
        const GpuLevel level = MakeGpuLevel(c.width, c.height);
        EXPECT_EQ(c.alignedWidth, level.alignedWidth);
        EXPECT_EQ(c.alignedHeight, level.alignedHeight);
        EXPECT_EQ(c.width * c.height, level.pixelCount);
    }
}

TEST(GpuLevel, RefusesMorePixelsThanCanBeCounted) {
    EXPECT_EQ(32768 * 65535, MakeGpuLevel(32768, 65535).pixelCount);
    EXPECT_EQ(64, MakeGpuLevel(32768, 65535).reduceBlocks);
    EXPECT_THROW(MakeGpuLevel(32768, 65536), std::bad_alloc);
}

TEST(ComputeReduceShape, ByHand) {
    constexpr struct {
        int n, threads, blocks;
    } kCases[] = {
        {1, 1, 1},
        {2, 1, 1},
        {3, 2, 1},
        {4, 2, 1},
        {5, 4, 1},
        {64, 32, 1},
        {257, 256, 1},
        {256, 128, 1},
        {511, 256, 1},
        {512, 256, 1},
        {513, 256, 2},
        {1025, 256, 3},
        {104 * 104, 256, 22},
        {32767, 256, 64},
        {32769, 256, 64},
        {1920 * 1080, 256, 64},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.n);
        const ReduceShape shape = ComputeReduceShape(c.n);
        EXPECT_EQ(c.threads, shape.threads);
        EXPECT_EQ(c.blocks, shape.blocks);
    }
}

}  // namespace
}  // namespace Gpu
