#include "metrics/psnr.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <random>
#include <vector>

#include "metric/convert_frame.h"
#include "tests/metrics/pictures.h"
#include "video/video_image.h"

namespace Metric {
namespace {

// 8-bit differences have an exact sum; the reference is the definition in long double. The logarithm is
// rounded to float before it is multiplied: two roundings.
TEST(Psnr, NoiseAgainstTheDefinition) {
    constexpr std::array<int, 2> kSizes[] = {{1, 1}, {17, 3}, {67, 33}, {352, 288}};
    for (const auto& [w, h] : kSizes) {
        SCOPED_TRACE(w);
        const auto first = NoisePicture(w, h, 1);
        const auto second = NoisePicture(w, h, 2);
        long double sum = 0;
        for (int i = 0; i < w * h; ++i)
            sum += std::pow(static_cast<long double>(first->GetV()[i]) - second->GetV()[i], 2);
        const auto expected = static_cast<double>(10 * std::log10(255.0L * 255 * w * h / sum));

        CPSNRMetric metric(PictureSize(w, h, ComponentV));
        Canvas canvas(w, h);
        const double tolerance = 2e-7 * std::abs(expected);
        EXPECT_NEAR(expected, metric.Measure({first.get(), second.get()})[0].value, tolerance);
        EXPECT_NEAR(expected,
                    metric.MeasureAndVisualize({second.get(), first.get()}, canvas.picture)[0].value,
                    tolerance);
    }
}

// On paper: 20 log10 255; 20 log10(65535 / 256); 20 log10 65535 + 10 log10 4, where a frame stops at 100, a
// sequence doesn't.
TEST(Psnr, PeakIsTheSmallerOfTheTwo) {
    const std::array<std::uint8_t, 24> frames[3] = {{}, {0, 1, 0, 1, 0, 1, 0, 1}, {1}};
    CMetricImage deep[3] = {{2, 2}, {2, 2}, {2, 2}};  // 0; 1 everywhere; 1 / 256 at a pixel
    for (std::size_t i = 0; i < 3; ++i) deep[i].LoadYuvDeep444(frames[i].data(), 16);
    const auto bytes = FlatPicture(2, 2, 1);
    const struct {
        CMetricImage* first;
        CMetricImage* second;
        float frame, sequence;
    } kCases[] = {
        {&deep[0], bytes.get(), 48.130804f, 48.130804f},
        {bytes.get(), &deep[0], 48.130804f, 48.130804f},
        {bytes.get(), &deep[1], 100, 100},
        {&deep[0], &deep[1], 48.164667f, 48.164667f},
        {&deep[0], &deep[2], 100, 102.35006f},
    };
    for (const auto& c : kCases) {
        CPSNRMetric metric(PictureSize(2, 2));
        EXPECT_FLOAT_EQ(c.frame, metric.Measure({c.first, c.second})[0].value);
        EXPECT_FLOAT_EQ(c.sequence, metric.GetAverages(false)[0].value);
    }
}

// From the frames' samples as from float planes, to the bit, where a sample serves a block of pixels too.
TEST(Psnr, SamplesGiveTheValueOfFloats) {
    constexpr int kLayouts[] = {YUV, IYUV, YV12, YV16, YUY2, Y, RGB24, P010, P214, P416, P416_RGB};
    constexpr std::array<int, 2> kSizes[] = {{1, 1}, {16, 16}, {18, 6}, {17, 8}, {34, 7}};
    std::mt19937 random(1);
    for (const int layout : kLayouts) {
        for (const auto& [w, h] : kSizes) {
            std::array<rkVideoImage, 6> frames;  // two frames, two scratch images each
            CMetricImage images[2] = {{w, h}, {w, h}};
            for (int component = ComponentY; component < kComponentCount; ++component) {
                SCOPED_TRACE(testing::Message() << layout << ": " << w << "x" << h << ", " << component);
                for (std::size_t i = 0; i < 2; ++i) {
                    frames[i].Create(w, h, layout, 0);
                    std::vector<std::uint8_t> packed(frames[i].PackedFrameBytes());
                    for (auto& byte : packed) byte = static_cast<std::uint8_t>(random());
                    frames[i].LoadFrame(packed.data());
                    ASSERT_TRUE(
                        ConvertFrame(frames[i], frames[i + 2], frames[i + 4], images[i], 0, component));
                }
                CPSNRMetric metric(PictureSize(w, h, component));
                const float fromSamples = metric.Measure({&images[0], &images[1]})[0].value;
                for (CMetricImage& image : images) image.ForgetFrame();
                EXPECT_EQ(metric.Measure({&images[0], &images[1]})[0].value, fromSamples);
            }
        }
    }
}

/// Lets a test into the map.
class OpenPsnr : public CPSNRMetric {
public:
    using CPSNRMetric::CPSNRMetric;
    using CPSNRMetric::GetMap;
};

// Brightness by hand from the bands 17, 20, 35, 99 and their slopes 3, 5, 15, 6.
TEST(Psnr, ColorsOfTheMap) {
    const struct {
        float decibels;
        std::vector<int> bgr;
    } kCases[] = {
        {-0.5f, {0, 0, 0}},      {0, {0, 0, 255}},  {16.99f, {0, 0, 207}}, {17, {0, 255, 255}},
        {19.99f, {0, 245, 245}}, {20, {0, 255, 0}}, {20.99f, {0, 255, 0}}, {21, {0, 240, 0}},
        {34.99f, {0, 45, 0}},    {35, {195, 0, 0}}, {60.99f, {45, 0, 0}},  {61, {40, 0, 0}},
        {98.99f, {40, 0, 0}},    {99, {0, 0, 0}},   {100, {0, 0, 0}},
    };
    constexpr int kCount = std::size(kCases);
    OpenPsnr metric(PictureSize(kCount, 2));
    for (int x = 0; x < kCount; ++x) metric.GetMap(ComponentG)[kCount + x] = kCases[x].decibels;
    Canvas canvas(kCount, 2);
    metric.Visualize(canvas.picture, ComponentG);
    for (int x = 0; x < kCount; ++x) {
        EXPECT_EQ((std::vector<int>{0, 0, 255}), canvas.Pixel(x, 0));
        EXPECT_EQ(kCases[x].bgr, canvas.Pixel(x, 1)) << kCases[x].decibels;
    }
}

// Errors up to 1 are invisible. Of the others 4 has 10 log10(65025 / 16) = 36.09 dB, 16 has 24.05, 64
// has 12.01.
TEST(Psnr, PictureOfErrors) {
    constexpr int kErrors[] = {0, 1, 4, 16, 64};
    const std::vector<int> kPixels[] = {{0, 0, 0}, {0, 0, 0}, {189, 0, 0}, {0, 195, 0}, {0, 0, 219}};
    const auto first = FlatPicture(5, 1, 100);
    const auto second = BytePicture(5, 1, [&](int x, int) { return 100 + kErrors[x]; });
    OpenPsnr metric(PictureSize(5, 1));
    Canvas canvas(5, 1);
    metric.MeasureAndVisualize({first.get(), second.get()}, canvas.picture);
    EXPECT_EQ(100, metric.GetMap(ComponentY)[1]);
    EXPECT_FLOAT_EQ(36.089603f, metric.GetMap(ComponentY)[2]);
    for (int x = 0; x < 5; ++x) EXPECT_EQ(kPixels[x], canvas.Pixel(x, 0)) << x;
}

}  // namespace
}  // namespace Metric
