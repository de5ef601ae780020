#include "metric/metric_image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "metric/lightness.h"

namespace Metric {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Floats = std::vector<float>;

Bytes WordBytes(const std::vector<int>& words) {
    Bytes bytes;
    for (int word : words) bytes.insert(bytes.end(), {std::uint8_t(word & 0xFF), std::uint8_t(word >> 8)});
    return bytes;
}

/// The three planes of the family that starts with `component`, one behind the other.
Floats Planes(CMetricImage& image, int component) {
    Floats samples;
    for (int plane = component; plane < component + 3; ++plane) {
        const float* first = image.GetPlane(plane);
        samples.insert(samples.end(), first, first + image.GetWidth() * image.GetHeight());
    }
    return samples;
}

// Pictures of 2 by 2. Values by hand: the word over 4, 64 or 256; chroma less 128; the peak is the greatest
// word's.
TEST(MetricImage, DeepSamples) {
    CMetricImage image(2, 2);
    Bytes frame = WordBytes({0, 4, 512, 1023, 512, 1023});
    image.LoadYuvDeep420(frame.data(), 10);
    EXPECT_EQ((Floats{0, 1, 128, 255.75f, 0, 0, 0, 0, 127.75f, 127.75f, 127.75f, 127.75f}),
              Planes(image, ComponentY));
    EXPECT_EQ(255.75f, image.GetPeak());

    frame = WordBytes({64, 16383, 0, 8192, 8192, 0, 12288, 64});
    image.LoadYuvDeep422(frame.data(), 14);
    EXPECT_EQ((Floats{1, 255.984375f, 0, 128, 0, 0, -128, -128, 64, 64, -127, -127}),
              Planes(image, ComponentY));
    EXPECT_EQ(255.984375f, image.GetPeak());

    frame = WordBytes({256, 65535, 0, 1, 32768, 0, 33024, 256, 0, 64, 128, 32768});
    image.LoadYuvDeep444(frame.data(), 16);
    EXPECT_EQ((Floats{1, 255.99609375f, 0, 0.00390625f, 0, -128, 1, -127, -128, -127.75f, -127.5f, 0}),
              Planes(image, ComponentY));
    EXPECT_EQ(255.99609375f, image.GetPeak());
    EXPECT_EQ(CMetricImage::FamilyYuv, image.GetFamily());

    frame = WordBytes({4, 8, 12, 16, 20, 24, 28, 32, 1023, 512, 1, 0});
    image.LoadRgbDeep(frame.data(), 10);
    EXPECT_EQ((Floats{255.75f, 128, 0.25f, 0, 1, 2, 3, 4, 5, 6, 7, 8}), Planes(image, ComponentR))
        << "from G, B, R";
    EXPECT_EQ(CMetricImage::FamilyRgb, image.GetFamily());
}

// Every pixel by its byte address, an address past the last whole sample meaning that one. The blocks have
// exactly a frame's bytes, an odd number at some sizes, so that the address sanitizer sees a read behind
// them.
TEST(MetricImage, DeepChromaAtAnySize) {
    constexpr std::array<int, 2> kSizes[] = {{1, 1}, {1, 2}, {3, 3}, {5, 3}, {9, 1}, {33, 7}, {64, 6}};
    std::mt19937 random(1);
    for (const bool is420 : {true, false}) {
        for (const auto& [w, h] : kSizes) {
            SCOPED_TRACE(std::to_string(w) + " by " + std::to_string(h) + (is420 ? ", 4:2:0" : ", 4:2:2"));
            Bytes frame(std::size_t((is420 ? 3 : 4) * w * h));
            for (auto& byte : frame) byte = std::uint8_t(random());
            const auto sample = [&](int address) {
                const std::size_t at = std::min(std::size_t(address), frame.size() / 2 * 2 - 2);
                return float(frame[at] + 256 * frame[at + 1]) / 256;
            };

            CMetricImage image(w, h);
            (image.*(is420 ? &CMetricImage::LoadYuvDeep420 : &CMetricImage::LoadYuvDeep422))(frame.data(),
                                                                                             16);
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

// 3 by 2 in rows of 5 bytes, 11 bytes a plane: the 9s aren't pixels.
TEST(MetricImage, BytesKeepTheirValue) {
    const Bytes block = {0, 255, 7,   9,   9, 16, 235, 1, 9, 9, 9, 128, 0, 255, 9,
                         9, 129, 127, 128, 9, 9,  9,   1, 2, 3, 9, 9,   4, 5,   6};
    CMetricImage image(3, 2);
    image.LoadYuvBytes(block.data(), 5, 11);
    EXPECT_EQ((Floats{0, 255, 7, 16, 235, 1, 0, -128, 127, 1, -1, 0, -127, -126, -125, -124, -123, -122}),
              Planes(image, ComponentY));
    image.LoadRgbBytes(block.data(), 5, 11);
    EXPECT_EQ((Floats{0, 255, 7, 16, 235, 1, 128, 0, 255, 129, 127, 128, 1, 2, 3, 4, 5, 6}),
              Planes(image, ComponentR));
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
        const int from = c.toRgb ? ComponentY : ComponentR;
        for (int i = 0; i < 3; ++i) *image.GetPlane(from + i) = c.from[std::size_t(i)];
        c.toRgb ? image.ToRgb(c.matrix) : image.ToYuv(c.matrix);
        const int to = c.toRgb ? ComponentR : ComponentY;
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(c.to[std::size_t(i)], *image.GetPlane(to + i), 5e-5) << i;
        EXPECT_EQ(255, image.GetPeak());
    }
}

TEST(MetricImage, ConvertersOnlyFromTheirFamily) {
    CMetricImage image(1, 1);
    const Bytes frame = WordBytes({1023, 512, 512});
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
}

// From another program: Python's double `**` with the exponent rounded to single precision.
TEST(MetricImage, Lightness) {
    const Floats lumas = {0, 1, 2, 3, 16, 128, 255};
    const Floats expected = {0, 3.5423529f, 7.0847058f, 10.383036f, 30.095152f, 76.189667f, 100};
    CMetricImage image(7, 1);
    std::copy(lumas.begin(), lumas.end(), image.GetY());
    image.ToL(0);
    for (std::size_t i = 0; i < lumas.size(); ++i) EXPECT_FLOAT_EQ(expected[i], image.GetL()[i]);

    const Bytes black(21);
    image.LoadRgbBytes(black.data(), 7, 7);
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
