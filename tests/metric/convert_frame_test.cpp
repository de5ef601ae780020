#include "metric/convert_frame.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

#include "metric/metric_image.h"
#include "video/video_image.h"

namespace Metric {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Pictures of 2 by 2, so that the image's rows are padded; packed frames and the plane that is wanted of
// them. Worked by hand from the layouts; the matrix of the decimal values is PC.601.
TEST(ConvertFrame, EveryFamilyAndComponent) {
    const Bytes bytes420 = {10, 20, 30, 40, 228, 138};
    const Bytes rgb24 = {1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 200, 100, 50, 0, 0};
    const Bytes deep420 = {0, 0, 4, 0, 0, 2, 255, 3, 0, 2, 8, 2};
    const Bytes deepRgb = {4, 0, 8, 0, 12, 0, 16, 0, 20, 0, 24, 0, 28, 0, 32, 0, 36, 0, 40, 0, 44, 0, 48, 0};
    const struct {
        const char* what;
        int colorSpace;
        Bytes packed;
        int component;
        float peak;
        std::vector<float> plane;
    } kCases[] = {
        {"bytes as they are",
         YUV,
         {0, 255, 16, 235, 1, 2, 3, 4, 5, 6, 7, 8},
         ComponentY,
         255,
         {0, 255, 16, 235}},
        {"4:2:0, U first", IYUV, bytes420, ComponentU, 255, {100, 100, 100, 100}},
        {"4:2:0, V first", YV12, bytes420, ComponentU, 255, {10, 10, 10, 10}},
        {"YUV to red", YV12, bytes420, ComponentR, 255, {124, 134, 144, 154}},
        {"YUV to lightness", Y, {0, 1, 2, 255}, ComponentL, 100, {0, 3.5423529f, 7.0847058f, 100}},
        {"rows of RGB24 are bottom-up", RGB24, rgb24, ComponentR, 255, {9, 50, 3, 6}},
        {"RGB24 to U", RGB24, rgb24, ComponentU, 255, {-0.583f, 50.95f, -0.583f, -0.583f}},
        {"RGB32",
         RGB32,
         {1, 2, 3, 99, 4, 5, 6, 99, 7, 8, 9, 99, 10, 11, 12, 99},
         ComponentB,
         255,
         {7, 10, 1, 4}},
        {"deep samples", P010, deep420, ComponentY, 255.75f, {0, 1, 128, 255.75f}},
        {"deep chroma", P010, deep420, ComponentV, 255.75f, {2, 2, 2, 2}},
        {"deep YUV to red", P010, deep420, ComponentR, 255, {2.28f, 3.28f, 130.28f, 255}},
        {"deep RGB is top-down", P410_RGB, deepRgb, ComponentR, 255.75f, {9, 10, 11, 12}},
        {"deep RGB to Y", P410_RGB, deepRgb, ComponentY, 255, {3.848f, 4.848f, 5.848f, 6.848f}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        std::array<rkVideoImage, 3> images;
        images[0].Create(2, 2, c.colorSpace, 0);
        ASSERT_EQ(c.packed.size(), images[0].PackedFrameBytes());
        images[0].LoadFrame(c.packed.data());
        CMetricImage image(2, 2);
        ASSERT_TRUE(ConvertFrame(images[0], images[1], images[2], image, 1, c.component));
        EXPECT_EQ(c.peak, image.GetPeak());
        for (std::size_t i = 0; i < c.plane.size(); ++i)
            EXPECT_NEAR(c.plane[i], image.GetPlane(c.component)[i], 1e-5) << i;
    }
}

// The image keeps what it held.
TEST(ConvertFrame, RefusedFrames) {
    constexpr struct {
        const char* what;
        int width, height, colorSpace;
        bool result;
    } kCases[] = {
        {"no conversion", 2, 2, Packed422Deep, false},
        {"no pixels", 0, 0, YUV, false},
        {"another size", 2, 4, YUV, false},
        {"another size, deep", 4, 2, P410_RGB, false},
        {"neither YUV nor RGB", 2, 2, GDIF, true},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        std::array<rkVideoImage, 3> images;
        if (c.width > 0) images[0].Create(c.width, c.height, c.colorSpace, 0);
        CMetricImage image(2, 2);
        image.GetY()[0] = 77;
        EXPECT_EQ(c.result, ConvertFrame(images[0], images[1], images[2], image, 0, ComponentR));
        EXPECT_EQ(77, image.GetY()[0]);
        EXPECT_EQ(CMetricImage::FamilyYuv, image.GetFamily());
    }
}

}  // namespace
}  // namespace Metric
