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

constexpr int kWidth = 6, kHeight = 4;

// Where the samples that mark a pixel lie in memory, in bytes, worked out by hand from the layouts: an image
// of 6 by 4 is allocated as 16 by 16, and deep frames are packed.
struct Layout {
    std::vector<int> tags;
    std::vector<std::size_t> firstPixel;
    std::size_t pixelBytes, rowBytes;

    std::vector<std::size_t> Places(std::size_t x, std::size_t y) const {
        std::vector<std::size_t> places = firstPixel;
        for (std::size_t& place : places) place += x * pixelBytes + y * rowBytes;
        return places;
    }
};

const Layout kLayouts[] = {
    {{RGB24}, {0, 1, 2}, 3, 48},
    {{RGB32}, {0, 1, 2}, 4, 64},
    {{YUV, YV12, IYUV, Y, YV16, YUVQ}, {0}, 1, 16},
    {{RGBP}, {0, 256, 512}, 1, 16},
    {{YUY2}, {0}, 2, 32},
    {{UYVY}, {1}, 2, 32},
    {{YVYU}, {0}, 4, 16},
    {{VYUY}, {1}, 4, 16},
    {{P010, P014, P016, P210, P214, P216, P410, P414, P416}, {0}, 2, 12},
    {{P410_RGB, P414_RGB, P416_RGB}, {0, 48, 96}, 2, 12},
};

struct Frame {
    Frame(int layout, int fill) : bytes(layout >= P010 ? 2 : 1) {
        image.Create(kWidth, kHeight, layout, 0);
        std::memset(image.Data(), fill, static_cast<std::size_t>(image.Capacity()));
    }
    void Set(const std::vector<std::size_t>& places, int high) {
        for (const std::size_t place : places) {
            std::memset(image.Data() + place, 0, bytes);
            image.Data()[place + bytes - 1] = static_cast<std::uint8_t>(high);
        }
    }
    bool Find(bool blackMask) { return FindMaskPixel(image, blackMask, x, y); }

    rkVideoImage image;
    std::size_t bytes;  // of a sample
    int x = -1, y = -1;
};

void Check(const Layout& layout, int tag, bool blackMask) {
    SCOPED_TRACE(std::to_string(tag) + (blackMask ? " black" : " not black"));
    const int unmarked = blackMask ? 255 : 0;
    const int marked = 255 - unmarked;  // of a 16-bit sample the high byte alone: 0xFF00 isn't 0
    Frame frame(tag, unmarked);
    EXPECT_FALSE(frame.Find(blackMask));

    // All samples but one don't mark a pixel.
    for (std::size_t without = 0; without < layout.firstPixel.size(); ++without) {
        std::vector<std::size_t> others = layout.Places(without, 0);
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(without));
        frame.Set(others, marked);
    }
    EXPECT_FALSE(frame.Find(blackMask));

    frame.Set(layout.Places(2, 3), marked);
    frame.Set(layout.Places(5, 2), marked);
    ASSERT_TRUE(frame.Find(blackMask));
    const bool isBottomUp = tag == RGB24 || tag == RGB32;
    EXPECT_EQ(std::pair(5, isBottomUp ? 1 : 2), std::pair(frame.x, frame.y));
}

TEST(FindMaskPixel, EveryLayout) {
    for (const Layout& layout : kLayouts)
        for (const int tag : layout.tags)
            for (const bool blackMask : {true, false}) Check(layout, tag, blackMask);
}

TEST(FindMaskPixel, NothingToFind) {
    for (const int layout : {GDIF, YRGN, Y410}) EXPECT_FALSE(Frame(layout, 0).Find(true)) << layout;
    Frame padding(Y, 255);
    std::memset(padding.image.Data() + 6, 0, 10);       // right of the first row
    std::memset(padding.image.Data() + 4 * 16, 0, 16);  // below the last one
    EXPECT_FALSE(padding.Find(true)) << "padding is no part of the picture";
    int x = 0, y = 0;
    EXPECT_FALSE(FindMaskPixel(rkVideoImage(), true, x, y));
}

using Row = std::vector<float>;

/// Planes of one row, as the family that `component` belongs to.
void Fill(Metric::CMetricImage& image, int component, const std::vector<Row>& rows) {
    const std::vector<std::uint8_t> bytes(rows[0].size() * 3);
    image.LoadYuvBytes(bytes.data(), static_cast<int>(rows[0].size()), rows[0].size());
    if (component == Metric::ComponentL) image.ToL(0);
    if (component == Metric::ComponentR) image.ToRgb(0);
    image.ForgetFrame();
    for (const Row& row : rows) std::copy(row.begin(), row.end(), image.GetPlane(component++));
}

TEST(ApplyMask, PaintsThePixelsOfExactlyThatColour) {
    using Metric::ComponentL, Metric::ComponentR, Metric::ComponentY;
    const Row plain = {1, 2, 3, 4, 5};
    Metric::CMetricImage image(5, 1), mask(5, 1);
    const auto row = [&](int component) {
        return Row(image.GetPlane(component), image.GetPlane(component) + 5);
    };
    const float nearly = std::nextafter(10.0f, 11.0f);
    for (const int component : {ComponentY, ComponentR}) {
        Fill(mask, component, {{10, nearly, 10, 10, 10}, {20, 20, 20, 21, 20}, {30, 30, 30, 30, 31}});
        Fill(image, component, {plain, plain, plain});
        ApplyMask(image, mask, 2, 0);
        for (int plane = 0; plane < 3; ++plane) {
            const auto colour = static_cast<float>(10 * plane + 10);
            EXPECT_EQ((Row{colour, 2, colour, 4, 5}), row(component + plane));
        }
    }
    Fill(mask, ComponentL, {{7, 8, 7, std::numeric_limits<float>::quiet_NaN(), 8}});
    Fill(image, ComponentL, {plain});
    ApplyMask(image, mask, 0, 0);
    ApplyMask(image, mask, 3, 0);
    EXPECT_EQ((Row{7, 2, 7, 4, 5}), row(ComponentL)) << "a NaN equals nothing";
}

}  // namespace
