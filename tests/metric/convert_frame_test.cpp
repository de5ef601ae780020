#include "metric/convert_frame.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
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

/// The byte planes of a frame by the conversions of images, on the scale of the float planes.
std::vector<float> PlanesByConversion(const rkVideoImage& frame) {
    rkVideoImage rgb, planes;
    const bool isYuv = rkIsYuv(frame.ColorSpace());
    if (isYuv)
        EXPECT_TRUE(planes.Convert(frame, YUV, 0, false));
    else
        EXPECT_TRUE(rgb.Convert(frame, RGB24, 0, false) && rgb.FlipVertical() &&
                    planes.Convert(rgb, RGBP, 0, false));
    std::vector<float> pixels;
    for (int plane = 0; plane < 3; ++plane)
        for (int y = 0; y < frame.VisibleHeight(); ++y)
            for (int x = 0; x < frame.VisibleWidth(); ++x)
                pixels.push_back(
                    static_cast<float>(planes.Row(plane, y)[x] - (isYuv && plane > 0 ? 128 : 0)));
    return pixels;
}

// Read where they lie: as if they were unpacked first, at any size.
TEST(ConvertFrame, BytesOfEveryLayout) {
    constexpr int kLayouts[] = {YUV, YUY2, UYVY, YV12, IYUV, Y, YV16, Y410, RGB24, RGB32, RGBP};
    constexpr std::array<int, 2> kSizes[] = {{1, 1}, {2, 3}, {7, 5}, {16, 16}, {33, 2}, {530, 3}, {1100, 2}};
    std::mt19937 random(1);
    for (const int layout : kLayouts) {
        for (const auto& [width, height] : kSizes) {
            SCOPED_TRACE(testing::Message() << layout << ": " << width << "x" << height);
            std::array<rkVideoImage, 3> images;
            images[0].Create(width, height, layout, 0);
            Bytes packed(images[0].PackedFrameBytes());
            for (auto& byte : packed) byte = static_cast<std::uint8_t>(random());
            images[0].LoadFrame(packed.data());
            const int component = rkIsYuv(layout) ? ComponentY : ComponentR;
            CMetricImage image(width, height);
            ASSERT_TRUE(ConvertFrame(images[0], images[1], images[2], image, 0, component));
            std::vector<float> pixels;
            for (int plane = component; plane < component + 3; ++plane)
                pixels.insert(pixels.end(), image.GetPlane(plane), image.GetPlane(plane) + width * height);
            EXPECT_EQ(PlanesByConversion(images[0]), pixels);
        }
    }
}

// A plane is made on its first reading; what was made or written by then is what the converters go on with.
TEST(ConvertFrame, TheFrameIsReadWhenAPlaneIsAskedFor) {
    std::array<rkVideoImage, 3> images;
    images[0].Create(16, 16, YUV, 0);
    CMetricImage image(16, 16);
    const auto fill = [&](std::uint8_t y, std::uint8_t chroma) {
        std::fill_n(images[0].Data(), 256, y);
        std::fill_n(images[0].Data() + 256, 512, chroma);
    };
    fill(10, 20);
    ASSERT_TRUE(ConvertFrame(images[0], images[1], images[2], image, 1, ComponentY));
    EXPECT_TRUE(image.GetSamples(ComponentU)->IsPacked());
    EXPECT_EQ(nullptr, image.GetSamples(ComponentR));
    EXPECT_EQ(10, image.GetY()[255]);
    fill(30, 128);
    EXPECT_EQ(10, image.GetY()[0]) << "made already";
    EXPECT_EQ(0, image.GetU()[0]);
    image.GetV()[7] = 100;
    image.ToRgb(1);
    EXPECT_EQ(nullptr, image.GetSamples(ComponentR)) << "no sample of the frame";
    EXPECT_EQ(10 + 1.14f * 100, image.GetR()[7]);
    EXPECT_EQ(10, image.GetB()[7]);
    image.ToYuv(1);
    EXPECT_NEAR(0.299f * (10 + 114) + 0.114f * 10, image.GetY()[7], 0.01) << "G is 0";

    ASSERT_TRUE(ConvertFrame(images[0], images[1], images[2], image, 1, ComponentY));
    image.ForgetFrame();
    fill(50, 60);
    EXPECT_EQ(30, image.GetY()[0]);
    EXPECT_EQ(0, image.GetV()[0]);
    EXPECT_EQ(nullptr, image.GetSamples(ComponentY));

    ASSERT_TRUE(ConvertFrame(images[0], images[1], images[2], image, 1, ComponentY));
    image.GetY();
    images[0].Create(16, 32, YUV, 0);
    EXPECT_FALSE(ConvertFrame(images[0], images[1], images[2], image, 1, ComponentY));
    EXPECT_EQ(50, image.GetY()[0]) << "the last good frame";
    EXPECT_EQ(0, image.GetU()[0]) << "and not what the block holds now";
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
