#include "engine/run/mask.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "metric/metric_image.h"
#include "video/color_space.h"
#include "video/video_image.h"

namespace {

constexpr int kWidth = 6;
constexpr int kHeight = 4;

// Byte places of the samples that mark pixel (column, row) as the frame lies in memory, worked out by hand
// from the layouts' definitions. An image of 6 by 4 is allocated as 16 by 16; deep frames are packed.
using Places = std::vector<std::size_t>;
Places Bgr24(std::size_t x, std::size_t y) {
    return {48 * y + 3 * x, 48 * y + 3 * x + 1, 48 * y + 3 * x + 2};
}
Places Bgr32(std::size_t x, std::size_t y) {
    return {64 * y + 4 * x, 64 * y + 4 * x + 1, 64 * y + 4 * x + 2};
}
Places Plane(std::size_t x, std::size_t y) {
    return {16 * y + x};
}
Places Planes(std::size_t x, std::size_t y) {
    return {16 * y + x, 256 + 16 * y + x, 512 + 16 * y + x};
}
Places Yuyv(std::size_t x, std::size_t y) {
    return {32 * y + 2 * x};
}
Places Uyvy(std::size_t x, std::size_t y) {
    return {32 * y + 2 * x + 1};
}
Places Yvyu(std::size_t x, std::size_t y) {
    return {16 * y + 4 * x};
}  // a unit of 4 bytes in rows of 16
Places Vyuy(std::size_t x, std::size_t y) {
    return {16 * y + 4 * x + 1};
}
Places Deep(std::size_t x, std::size_t y) {
    return {2 * (6 * y + x)};
}
Places DeepRgb(std::size_t x, std::size_t y) {
    return {2 * (6 * y + x), 2 * (24 + 6 * y + x), 2 * (48 + 6 * y + x)};
}

constexpr struct {
    int layout;
    Places (*places)(std::size_t x, std::size_t y);
    bool isDeep, isBottomUp;
} kLayouts[] = {
    {RGB24, Bgr24, false, true},      {RGB32, Bgr32, false, false},     {YUV, Plane, false, false},
    {YUY2, Yuyv, false, false},       {UYVY, Uyvy, false, false},       {YV12, Plane, false, false},
    {IYUV, Plane, false, false},      {Y, Plane, false, false},         {YV16, Plane, false, false},
    {RGBP, Planes, false, false},     {YUVQ, Plane, false, false},      {YVYU, Yvyu, false, false},
    {VYUY, Vyuy, false, false},       {P010, Deep, true, false},        {P014, Deep, true, false},
    {P016, Deep, true, false},        {P210, Deep, true, false},        {P214, Deep, true, false},
    {P216, Deep, true, false},        {P410, Deep, true, false},        {P414, Deep, true, false},
    {P416, Deep, true, false},        {P410_RGB, DeepRgb, true, false}, {P414_RGB, DeepRgb, true, false},
    {P416_RGB, DeepRgb, true, false},
};

class Frame {
public:
    Frame(int layout, bool isDeep, int fill) : bytes(isDeep ? 2 : 1) {
        image.Create(kWidth, kHeight, layout, 0);
        std::memset(image.Data(), fill, static_cast<std::size_t>(image.Capacity()));
    }
    void Set(const Places& places, int high) {
        for (const std::size_t place : places) {
            std::memset(image.Data() + place, 0, bytes);
            image.Data()[place + bytes - 1] = static_cast<std::uint8_t>(high);
        }
    }
    bool Find(bool blackMask) { return FindMaskPixel(image, blackMask, x, y); }

    rkVideoImage image;
    int x = -1;
    int y = -1;

private:
    std::size_t bytes;
};

TEST(FindMaskPixel, EveryLayout) {
    for (const auto& layout : kLayouts) {
        for (const bool blackMask : {true, false}) {
            SCOPED_TRACE(std::to_string(layout.layout) + (blackMask ? " black" : " not black"));
            // The high byte of a 16-bit sample decides alone: 0xFF00 isn't 0.
            const int unmarked = blackMask ? 255 : 0;
            const int marked = 255 - unmarked;
            Frame frame(layout.layout, layout.isDeep, unmarked);
            EXPECT_FALSE(frame.Find(blackMask));

            // All samples but one don't mark a pixel.
            Places most = layout.places(1, 0);
            most.pop_back();
            frame.Set(most, marked);
            EXPECT_FALSE(frame.Find(blackMask));

            frame.Set(layout.places(2, 3), marked);
            frame.Set(layout.places(5, 2), marked);
            ASSERT_TRUE(frame.Find(blackMask));
            EXPECT_EQ(5, frame.x);
            EXPECT_EQ(layout.isBottomUp ? 1 : 2, frame.y);
        }
    }
}

TEST(FindMaskPixel, NothingToFind) {
    for (const int layout : {GDIF, YRGN, Y410}) {
        Frame frame(layout, false, 0);
        EXPECT_FALSE(frame.Find(true)) << layout;
    }
    Frame padding(Y, false, 255);
    std::memset(padding.image.Data() + 6, 0, 10);       // right of the first row
    std::memset(padding.image.Data() + 4 * 16, 0, 16);  // below the last one
    EXPECT_FALSE(padding.Find(true)) << "padding is no part of the picture";
    int x = 0, y = 0;
    EXPECT_FALSE(FindMaskPixel(rkVideoImage(), true, x, y));
}

/// A one-row image of a family, its first planes given pixel by pixel.
void Fill(Metric::CMetricImage& image, std::vector<std::array<float, 3>> pixels, bool isLightness = false) {
    const std::vector<std::uint8_t> bytes(pixels.size() * 3);
    image.LoadYuvBytes(bytes.data(), static_cast<int>(pixels.size()), pixels.size());
    if (isLightness) image.ToL(0);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        float* planes[] = {isLightness ? image.GetL() : image.GetY(), image.GetU(), image.GetV()};
        for (std::size_t plane = 0; plane < (isLightness ? 1 : 3); ++plane)
            planes[plane][i] = pixels[i][plane];
    }
}

TEST(ApplyMask, PaintsThePixelsOfExactlyThatColour) {
    const float nearly = std::nextafter(10.0f, 11.0f);
    Metric::CMetricImage image(5, 1), mask(5, 1);
    Fill(mask, {{10, 20, 30}, {nearly, 20, 30}, {10, 20, 30}, {10, 21, 30}, {10, 20, 31}});
    Fill(image, {{1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {4, 4, 4}, {5, 5, 5}});
    ApplyMask(image, mask, 2, 0);
    const auto row = [](const float* plane) { return std::vector<float>(plane, plane + 5); };
    EXPECT_EQ((std::vector<float>{10, 2, 10, 4, 5}), row(image.GetY()));
    EXPECT_EQ((std::vector<float>{20, 2, 20, 4, 5}), row(image.GetU()));
    EXPECT_EQ((std::vector<float>{30, 2, 30, 4, 5}), row(image.GetV()));

    const float nan = std::numeric_limits<float>::quiet_NaN();
    Fill(mask, {{nan, 0, 0}, {nan, 0, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
    ApplyMask(image, mask, 0, 0);
    EXPECT_EQ((std::vector<float>{10, 2, 10, 4, 5}), row(image.GetY())) << "a NaN equals nothing";

    Fill(mask, {{7, 0, 0}, {8, 0, 0}, {7, 0, 0}, {8, 0, 0}, {8, 0, 0}}, true);
    ApplyMask(image, mask, 0, 0);
    EXPECT_EQ((std::vector<float>{10, 2, 10, 4, 5}), row(image.GetY())) << "another family";
    Fill(image, {{1, 0, 0}, {2, 0, 0}, {3, 0, 0}, {4, 0, 0}, {5, 0, 0}}, true);
    ApplyMask(image, mask, 0, 0);
    EXPECT_EQ((std::vector<float>{7, 2, 7, 4, 5}), row(image.GetL()));

    Metric::CMetricImage narrow(4, 1);
    ApplyMask(narrow, mask, 0, 0);
    EXPECT_EQ(0, narrow.GetL()[0]) << "another size";
}

}  // namespace
