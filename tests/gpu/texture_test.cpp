#include <gtest/gtest.h>

#include "gpu/host_runtime.h"
#include "gpu/storage.h"

namespace Gpu {
namespace {

// Of the texels (10, 20), (30, 60), worked by hand from their centres at the halves.
TEST(HostTexture, ReadsBetweenAndBeyondTexels) {
    HostRuntime runtime;
    const CheckedGpu gpu({&runtime, 0}, "TEST");
    const float texels[] = {10, 20, 30, 60};
    TextureArray point(gpu, 1, 2, 2, TextureFilter::Point);
    TextureArray linear(gpu, 1, 2, 2, TextureFilter::Linear);
    point.CopyFrom(texels, 2, 2, 2, kDefaultStream);
    linear.CopyFrom(texels, 2, 2, 2, kDefaultStream);
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
    }
}

// The map of a level as it is stretched over the picture: texels 0, 4, 8, 12 over 8 elements. Weights of 0
// leave the other levels out.
TEST(MsssimPicture, StretchesALevelOverTheAlignedSize) {
    HostRuntime runtime;
    const CheckedGpu gpu({&runtime, 0}, "TEST");
    const float map[8] = {0, 4, 8, 12};
    const BufferTexture texture(gpu, map, 4, 1, 8);
    float picture[8] = {};
    cuda_msssim_vis vis = {};
    for (int level = 0; level < kLevels; ++level) vis.maps[level] = texture.Texture();
    vis.weights[3] = 1;
    vis.ssim_map = picture;
    vis.width = 8;
    vis.height = 1;
    gpu.Check(gpu->Launch(vis, {8, 1}, kDefaultStream));
    const float expected[] = {0, 1, 3, 5, 7, 9, 11, 12};
    for (int x = 0; x < 8; ++x) EXPECT_EQ(255 - 255 * expected[x], picture[x]) << x;
}

}  // namespace
}  // namespace Gpu
