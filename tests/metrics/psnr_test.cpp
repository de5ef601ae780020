#include "metrics/psnr.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <iterator>
#include <random>

#include "metric/convert_frame.h"
#include "metrics/psnr_variants.h"
#include "tests/metrics/pictures.h"

namespace Metric {
namespace {

// On paper: 20 log10 255; 20 log10(65535 / 256); 20 log10 65535 + 10 log10 4, where a frame stops at 100, a
// sequence doesn't.
TEST(Psnr, PeakIsTheSmallerOfTheTwo) {
    const std::array<std::uint8_t, 24> frames[3] = {{}, {0, 1, 0, 1, 0, 1, 0, 1}, {1}};
    CMetricImage deep[3] = {{2, 2}, {2, 2}, {2, 2}};  // 0; 1 everywhere; 1 / 256 at a pixel
    for (std::size_t i = 0; i < 3; ++i) deep[i].LoadYuvDeep444(frames[i].data(), 16);
    const auto bytes = FlatPicture(2, 2, 1);
    const struct {
        CMetricImage *first, *second;
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

// On paper. Three equal frames and one of error 4: 10 log10(peak^2 / 4) for the frame, by errors 10
// log10(peak^2) for the sequence, else the mean of 100, 100, 100 and the frame's value. L at a difference of
// 2 has the same error and a peak of 100.
TEST(Psnr, VariantsOfPeaksAndAverages) {
    constexpr struct {
        const char* name;
        std::unique_ptr<CMetric> (*make)(MetricParameters);
        float frame, sequence;
    } kCases[] = {
        {"PSNR", Make<CPSNRMetric>, 42.110204f, 48.130804f},
        {"PSNR (256)", Make<CPsnr256Metric>, 42.144199f, 48.164799f},
        {"APSNR", Make<CApsnrMetric>, 42.110204f, 85.527551f},
        {"APSNR (256)", Make<CApsnr256Metric>, 42.144199f, 85.536050f},
    };
    const auto first = FlatPicture(24, 3, 0), second = FlatPicture(24, 3, 2);
    CMetricImage darkL(24, 3), brightL(24, 3);
    darkL.ToL(1);
    brightL.ToL(1);
    std::fill_n(brightL.GetL(), 24 * 3, 2.0f);
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        const auto metric = c.make(PictureSize(24, 3));
        for (int frame = 0; frame < 3; ++frame)
            EXPECT_EQ(100, metric->Measure({first.get(), first.get()})[0].value);
        EXPECT_EQ(100, metric->GetAverages(false)[0].value);
        Canvas canvas(24, 3);
        EXPECT_FLOAT_EQ(c.frame,
                        metric->MeasureAndVisualize({first.get(), second.get()}, canvas.picture)[0].value);
        EXPECT_FLOAT_EQ(c.sequence, metric->GetAverages(false)[0].value);
        EXPECT_FLOAT_EQ(33.9794f,
                        c.make(PictureSize(24, 3, ComponentL))->Measure({&darkL, &brightL})[0].value);
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
    Probe<CPSNRMetric> metric(PictureSize(kCount, 2));
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
    Canvas canvas(5, 1);
    MeasureOnce<CPSNRMetric>(*first, *second, &canvas.picture);
    for (int x = 0; x < 5; ++x) EXPECT_EQ(kPixels[x], canvas.Pixel(x, 0)) << x;
}

}  // namespace
}  // namespace Metric
