#include "metric/metric_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "metric/convert_frame.h"
#include "metric/lightness.h"
#include "video/video_image.h"

namespace Metric {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Floats = std::vector<float>;

Bytes WordBytes(const std::vector<int>& words) {
    Bytes bytes;
    for (int word : words) bytes.insert(bytes.end(), {std::uint8_t(word & 0xFF), std::uint8_t(word >> 8)});
    return bytes;
}

Bytes RandomBytes(std::size_t count, std::mt19937& random) {
    Bytes bytes(count);
    for (auto& byte : bytes) byte = std::uint8_t(random());
    return bytes;
}

/// The planes from `component` on, one behind the other.
Floats Planes(CMetricImage& image, int component, int count = 3) {
    Floats samples;
    for (int plane = component; plane < component + count; ++plane) {
        const float* first = image.GetPlane(plane);
        samples.insert(samples.end(), first, first + image.GetWidth() * image.GetHeight());
    }
    return samples;
}

/// A frame, and the scratch images of its conversion.
struct Frame {
    Frame(int width, int height, int colorSpace) { images[0].Create(width, height, colorSpace, 0); }

    bool Convert(CMetricImage& image, int matrix, int component) {
        return ConvertFrame(images[0], images[1], images[2], image, matrix, component);
    }

    std::array<rkVideoImage, 3> images;
};

// Pictures of 2 by 2, so that the image's rows are padded; packed frames and the plane that is wanted of
// them, or all three of its family. Worked by hand from the layouts: a word over 4, 64 or 256, chroma less
// 128, the peak is the greatest word's. The matrix of the decimal values is PC.601. Lightness is from another
// program: Python's double `**` with the exponent rounded to single precision.
TEST(ConvertFrame, EveryFamilyAndComponent) {
    const Bytes bytes444 = {0, 255, 16, 235, 1, 2, 3, 4, 5, 6, 7, 8}, bytes420 = {10, 20, 30, 40, 228, 138};
    const Bytes rgb24 = {1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 200, 100, 50, 0, 0};
    const Bytes rgb32 = {1, 2, 3, 99, 4, 5, 6, 99, 7, 8, 9, 99, 10, 11, 12, 99};
    const Bytes deep420 = WordBytes({0, 4, 512, 1023, 512, 520});
    const Bytes deep422 = WordBytes({64, 16383, 0, 8192, 8192, 0, 12288, 64});
    const Bytes deep444 = WordBytes({256, 65535, 0, 1, 32768, 0, 33024, 256, 0, 64, 128, 32768});
    const Bytes deepRgb = WordBytes({4, 8, 12, 16, 20, 24, 28, 32, 1023, 512, 1, 0});
    const Floats planes422 = {1, 255.984375f, 0, 128, 0, 0, -128, -128, 64, 64, -127, -127};
    const Floats planes444 = {1, 255.99609375f, 0, 0.00390625f, 0, -128, 1, -127, -128, -127.75f, -127.5f, 0};
    const Floats planesRgb = {255.75f, 128, 0.25f, 0, 1, 2, 3, 4, 5, 6, 7, 8};
    const struct {
        const char* what;
        int colorSpace;
        Bytes packed;
        int component;
        float peak;
        Floats expected;
    } kCases[] = {
        {"bytes as they are", YUV, bytes444, ComponentY, 255, {0, 255, 16, 235}},
        {"4:2:0, U first", IYUV, bytes420, ComponentU, 255, {100, 100, 100, 100}},
        {"4:2:0, V first", YV12, bytes420, ComponentU, 255, {10, 10, 10, 10}},
        {"YUV to red", YV12, bytes420, ComponentR, 255, {124, 134, 144, 154}},
        {"YUV to lightness", Y, {0, 1, 2, 3}, ComponentL, 100, {0, 3.5423529f, 7.0847058f, 10.383036f}},
        {"and on", Y, {16, 128, 255, 255}, ComponentL, 100, {30.095152f, 76.189667f, 100, 100}},
        {"rows of RGB24 are bottom-up", RGB24, rgb24, ComponentR, 255, {9, 50, 3, 6}},
        {"RGB24 to U", RGB24, rgb24, ComponentU, 255, {-0.583f, 50.95f, -0.583f, -0.583f}},
        {"RGB32", RGB32, rgb32, ComponentB, 255, {7, 10, 1, 4}},
        {"10 bits", P010, deep420, ComponentY, 255.75f, {0, 1, 128, 255.75f, 0, 0, 0, 0, 2, 2, 2, 2}},
        {"14 bits", P214, deep422, ComponentY, 255.984375f, planes422},
        {"16 bits", P416, deep444, ComponentY, 255.99609375f, planes444},
        {"deep YUV to red", P010, deep420, ComponentR, 255, {2.28f, 3.28f, 130.28f, 255}},
        {"deep G, B, R", P410_RGB, deepRgb, ComponentR, 255.75f, planesRgb},
        {"deep RGB to Y", P410_RGB, deepRgb, ComponentY, 255, {77.62625f, 40.13f, 2.63375f, 3.26f}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        Frame frame(2, 2, c.colorSpace);
        ASSERT_EQ(c.packed.size(), frame.images[0].PackedFrameBytes());
        frame.images[0].LoadFrame(c.packed.data());
        CMetricImage image(2, 2);
        ASSERT_TRUE(frame.Convert(image, 1, c.component));
        EXPECT_EQ(c.peak, image.GetPeak());
        const Floats planes = Planes(image, c.component, int(c.expected.size() / 4));
        const double tolerance = planes.size() == 12 ? 0 : 1e-5;
        for (std::size_t i = 0; i < planes.size(); ++i) EXPECT_NEAR(c.expected[i], planes[i], tolerance) << i;
    }
}

/// The byte planes of a frame by the conversions of images, on the scale of the float planes.
Floats PlanesByConversion(const rkVideoImage& frame) {
    rkVideoImage rgb, planes;
    const bool isYuv = rkIsYuv(frame.ColorSpace());
    EXPECT_TRUE(isYuv ? planes.Convert(frame, YUV, 0, false)
                      : rgb.Convert(frame, RGB24, 0, false) && rgb.FlipVertical() &&
                            planes.Convert(rgb, RGBP, 0, false));
    Floats pixels;
    for (int plane = 0; plane < 3; ++plane)
        for (int y = 0; y < frame.VisibleHeight(); ++y)
            for (int x = 0; x < frame.VisibleWidth(); ++x)
                pixels.push_back(float(planes.Row(plane, y)[x] - (isYuv && plane > 0 ? 128 : 0)));
    return pixels;
}

// Read where they lie: as if they were unpacked first, at any size.
TEST(ConvertFrame, BytesOfEveryLayout) {
    constexpr std::array<int, 2> kSizes[] = {{1, 1}, {2, 3}, {7, 5}, {16, 16}, {33, 2}, {530, 3}, {1100, 2}};
    std::mt19937 random(1);
    for (const int layout : {YUV, YUY2, UYVY, YV12, IYUV, Y, YV16, Y410, RGB24, RGB32, RGBP}) {
        for (const auto& [width, height] : kSizes) {
            SCOPED_TRACE(testing::Message() << layout << ": " << width << "x" << height);
            Frame frame(width, height, layout);
            frame.images[0].LoadFrame(RandomBytes(frame.images[0].PackedFrameBytes(), random).data());
            const int component = rkIsYuv(layout) ? ComponentY : ComponentR;
            CMetricImage image(width, height);
            ASSERT_TRUE(frame.Convert(image, 0, component));
            EXPECT_EQ(PlanesByConversion(frame.images[0]), Planes(image, component));
        }
    }
}

// A plane is made on its first reading; what was made or written by then is what the converters go on with.
TEST(ConvertFrame, TheFrameIsReadWhenAPlaneIsAskedFor) {
    Frame frame(16, 16, YUV);
    rkVideoImage& yuv = frame.images[0];
    CMetricImage image(16, 16);
    const auto fill = [&](std::uint8_t y, std::uint8_t chroma) {
        std::fill_n(yuv.Data(), 256, y);
        std::fill_n(yuv.Data() + 256, 512, chroma);
    };
    fill(10, 20);
    ASSERT_TRUE(frame.Convert(image, 1, ComponentY));
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

    ASSERT_TRUE(frame.Convert(image, 1, ComponentY));
    image.ForgetFrame();
    fill(50, 60);
    EXPECT_EQ(30, image.GetY()[0]);
    EXPECT_EQ(0, image.GetV()[0]);
    EXPECT_EQ(nullptr, image.GetSamples(ComponentY));

    ASSERT_TRUE(frame.Convert(image, 1, ComponentY));
    image.GetY();
    yuv.Create(16, 32, YUV, 0);
    EXPECT_FALSE(frame.Convert(image, 1, ComponentY));
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
        Frame frame(c.width, c.height, c.colorSpace);
        CMetricImage image(2, 2);
        image.GetY()[0] = 77;
        EXPECT_EQ(c.result, frame.Convert(image, 0, ComponentR));
        EXPECT_EQ(77, image.GetY()[0]);
        EXPECT_EQ(CMetricImage::FamilyYuv, image.GetFamily());
    }
}

// Every pixel by its byte address, an address past the last whole sample meaning that one. The blocks have
// exactly a frame's bytes, an odd number at some sizes, so that the address sanitizer sees a read behind
// them.
TEST(MetricImage, DeepChromaAtAnySize) {
    constexpr std::array<int, 2> kSizes[] = {{1, 1}, {1, 2}, {3, 3}, {5, 3}, {9, 1}, {33, 7}, {64, 6}};
    std::mt19937 random(1);
    for (const bool is420 : {true, false}) {
        for (const auto& [w, h] : kSizes) {
            SCOPED_TRACE(testing::Message() << w << " by " << h << (is420 ? ", 4:2:0" : ", 4:2:2"));
            const Bytes frame = RandomBytes(std::size_t((is420 ? 3 : 4) * w * h), random);
            const auto sample = [&](int address) {
                const std::size_t at = std::min(std::size_t(address), frame.size() / 2 * 2 - 2);
                return float(frame[at] + 256 * frame[at + 1]) / 256;
            };
            CMetricImage image(w, h);
            is420 ? image.LoadYuvDeep420(frame.data(), 16) : image.LoadYuvDeep422(frame.data(), 16);
            const int vStart = (is420 ? 5 * w * h / 2 : 3 * w * h) / 2 * 2;
            for (int y = 0, i = 0; y < h; ++y) {
                for (int x = 0; x < w; ++x, ++i) {
                    const int offset = 2 * ((is420 ? y / 2 : y) * (w / 2) + x / 2);
                    ASSERT_EQ(sample(2 * i), image.GetY()[i]) << i;
                    ASSERT_EQ(sample(2 * w * h + offset) - 128, image.GetU()[i]) << i;
                    ASSERT_EQ(sample(vStart + offset) - 128, image.GetV()[i]) << i;
                }
            }
        }
    }
}

// By hand from the two matrices in decimal numbers; the tolerance covers their rounding to float.
TEST(MetricImage, ColorMatrices) {
    constexpr struct {
        const char* what;
        bool toRgb;
        int matrix;
        std::array<float, 3> from, to;
    } kCases[] = {
        {"REC.601", false, 0, {100, 200, 50}, {147.4f, -51.05f, -33.25f}},
        {"PC.601", false, 1, {100, 200, 50}, {153, -50.7f, -46.5f}},
        {"PC.601 without a limit", false, 1, {0, 255.75f, 255.75f}, {179.28075f, 37.59525f, -157.28625f}},
        {"REC.601", true, 0, {100, 10, 20}, {129.696f, 77.606f, 117.956f}},
        {"REC.601 grey", true, 0, {50, 0, 0}, {39.576f, 39.576f, 39.576f}},
        {"REC.601 limits", true, 0, {250, 0, -128}, {68.088f, 255, 255}},
        {"PC.601", true, 1, {100, 10, 20}, {122.8f, 84.43f, 120.32f}},
        {"PC.601 limits", true, 1, {20, -64, 127}, {164.78f, 0, 0}},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        CMetricImage image(1, 1);
        const Bytes black(6);
        if (!c.toRgb) image.LoadRgbDeep(black.data(), 10);
        const int from = c.toRgb ? ComponentY : ComponentR, to = c.toRgb ? ComponentR : ComponentY;
        for (int i = 0; i < 3; ++i) *image.GetPlane(from + i) = c.from[std::size_t(i)];
        c.toRgb ? image.ToRgb(c.matrix) : image.ToYuv(c.matrix);
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(c.to[std::size_t(i)], *image.GetPlane(to + i), 5e-5) << i;
        EXPECT_EQ(255, image.GetPeak());
    }
}

TEST(MetricImage, ConvertersOnlyFromTheirFamily) {
    CMetricImage image(1, 1);
    const Bytes frame = WordBytes({1023, 512, 512}), black(6);
    image.LoadYuvDeep444(frame.data(), 10);
    image.ToYuv(1);
    EXPECT_EQ(255.75f, image.GetY()[0]);
    EXPECT_EQ(255, image.GetPeak()) << "falls although nothing was converted";
    image.ToL(1);
    EXPECT_EQ(100, image.GetPeak());
    image.GetL()[0] = 7;
    image.ToL(0);
    image.ToRgb(0);
    EXPECT_EQ(7, image.GetL()[0]);
    EXPECT_EQ(0, image.GetR()[0]);
    EXPECT_EQ(1, image.GetMatrix());

    image.LoadRgbDeep(black.data(), 10);
    image.ToL(0);
    EXPECT_FLOAT_EQ(30.095152f, image.GetL()[0]) << "the black of REC.601 is 16";
}

// Looked up or not: all deep samples, what lies between them, and what a sound picture doesn't hold.
TEST(MetricImage, LightnessTableHasTheBitsOfTheFormula) {
    Floats lumas = {-1, -0.00390625f, 256, 300.5f, 16383.75f, 81.535f, 0.001f, 255.998f};
    for (int word = 0; word <= 65535; ++word) lumas.push_back(float(word) / 256);
    std::mt19937 random(1);
    for (int i = 0; i < 2'000'000; ++i) lumas.push_back(float(random()) / 0x1p24f);
    for (int i = 0; i < 20'000; ++i) {  // around the end of the line
        lumas.push_back(std::nextafter(i == 0 ? 2.2577f : lumas.back(), 3.0f));
        lumas.push_back(lumas.back());
    }
    Floats row(lumas.size());
    LightnessRow(lumas.data(), row.data(), int(row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) ASSERT_EQ(Lightness(lumas[i]), row[i]) << lumas[i];
}

}  // namespace
}  // namespace Metric
