#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <iterator>

#include "metrics/delta.h"
#include "metrics/msad.h"
#include "metrics/mse.h"
#include "metrics/psnr.h"
#include "tests/metrics/pictures.h"

namespace Metric {
namespace {

const struct {
    const char* name;
    std::unique_ptr<CMetric> (*make)(MetricParameters);
    long double (*term)(long double difference);
    bool isSigned;
} kMetrics[] = {
    {"MSE", Make<CMSEMetric>, [](long double d) { return d * d; }, false},
    {"MSAD", Make<CMSADMetric>, [](long double d) { return std::abs(d); }, false},
    {"Delta", Make<CDeltaMetric>, [](long double d) { return d; }, true},
};

// The reference is the definition in long double. A float sum of one row is off by at most the row's 16th
// part of additions and the combining ones, 2^-24 each; the rows add next to nothing to that.
TEST(Difference, NoiseAgainstTheDefinition) {
    constexpr std::array<int, 2> kSizes[] = {{1, 1}, {15, 3}, {16, 1}, {17, 33}, {1920, 1080}};
    for (const auto& [w, h] : kSizes) {
        const auto first = NoisePicture(w, h, 1), second = NoisePicture(w, h, 2);
        for (const auto& m : kMetrics) {
            SCOPED_TRACE(testing::Message() << m.name << " " << w << " by " << h);
            long double sum = 0, magnitude = 0;
            for (int i = 0; i < w * h; ++i) {
                const long double term =
                    m.term(static_cast<long double>(first->GetY()[i]) - second->GetY()[i]);
                sum += term;
                magnitude += std::abs(term);
            }
            const double tolerance =
                static_cast<double>(magnitude / w / h) * (w / 16 + 18) * std::ldexp(1.0, -24);

            const auto metric = m.make(PictureSize(w, h));
            Canvas canvas(w, h);
            EXPECT_EQ(0, metric->Measure({first.get(), first.get()})[0].value);
            const float value =
                metric->MeasureAndVisualize({first.get(), second.get()}, canvas.picture)[0].value;
            EXPECT_NEAR(static_cast<double>(sum / w / h), value, tolerance);
            EXPECT_EQ(value / 2, metric->GetAverages(true)[0].value);
            EXPECT_EQ(m.isSigned ? -value : value, metric->Measure({second.get(), first.get()})[0].value);
        }

        // 8-bit differences have an exact sum; the logarithm is rounded to float before it is multiplied.
        long double squares = 0;
        for (int i = 0; i < w * h; ++i)
            squares += std::pow(static_cast<long double>(first->GetY()[i]) - second->GetY()[i], 2);
        const auto psnr = static_cast<double>(10 * std::log10(255.0L * 255 * w * h / squares));
        EXPECT_NEAR(psnr, MeasureOnce<CPSNRMetric>(*first, *second), 2e-7 * std::abs(psnr));
    }
}

// A constant adds up with the same rounding in row after row, the worst case for a float sum: without the
// carried excess the mean is off by 1e-4 and more here.
TEST(Difference, LargeFlatFrame) {
    constexpr int kWidth = 16, kHeight = 100000;
    CMetricImage first(kWidth, kHeight), second(kWidth, kHeight);
    std::fill_n(first.GetU(), kWidth * kHeight, 0.1f);
    for (const auto& m : kMetrics) {
        SCOPED_TRACE(testing::Message() << m.name);
        const auto metric = m.make(PictureSize(kWidth, kHeight, ComponentU));
        const auto expected = static_cast<double>(m.term(0.1f));
        EXPECT_NEAR(expected, metric->Measure({&first, &second})[0].value, 1e-6 * expected);
    }
}

// In float the ones after 2^24 would be lost: (2^24 + 8) / 4 = 2^22 + 2.
TEST(Difference, AverageIsTheMeanOfTheFirstValuesInDouble) {
    CMSEMetric metric(PictureSize(1, 1)), other(PictureSize(1, 1));
    for (const float value : {16777216.0f, 1.0f, 1.0f, 6.0f}) metric.AddFrameValues({value, 1000});
    EXPECT_EQ(4194306.0f, metric.GetAverages(true)[0].value);
    EXPECT_EQ(metric.GetResultIds()[0] + 1, other.GetResultInfo(false)[0].resultId) << "an id of its own";
}

// First minus second at a pixel, and what each metric paints there, by hand.
TEST(Difference, Pictures) {
    constexpr auto grey = [](int level) { return std::vector<int>(3, level); };
    const struct {
        float difference;
        std::array<std::vector<int>, 3> bgr;  // MSE, MSAD, Delta
    } kCases[] = {
        {0, {grey(0), grey(0), {0, 0, 0}}},         {0.75f, {grey(3), grey(7), {0, 0, 2}}},
        {-0.25f, {grey(1), grey(2), {0, 0, 0}}},    {-26, {grey(130), grey(255), {0, 78, 0}}},
        {25, {grey(125), grey(250), {0, 0, 75}}},   {51, {grey(255), grey(255), {0, 0, 153}}},
        {52, {grey(4), grey(255), {0, 0, 156}}},    {-84, {grey(164), grey(255), {0, 252, 0}}},
        {-86, {grey(174), grey(255), {0, 255, 0}}}, {255, {grey(251), grey(255), {0, 0, 255}}},
    };
    constexpr int kCount = std::size(kCases);
    CMetricImage first(kCount, 1), second(kCount, 1);
    for (int x = 0; x < kCount; ++x) first.GetR()[x] = kCases[x].difference;
    for (std::size_t i = 0; i < std::size(kMetrics); ++i) {
        Canvas canvas(kCount, 1);
        const auto metric = kMetrics[i].make(PictureSize(kCount, 1, ComponentR));
        metric->MeasureAndVisualize({&first, &second}, canvas.picture);
        for (int x = 0; x < kCount; ++x) {
            SCOPED_TRACE(testing::Message() << kMetrics[i].name << " " << kCases[x].difference);
            EXPECT_EQ(kCases[x].bgr[i], canvas.Pixel(x, 0));
        }
    }
}

}  // namespace
}  // namespace Metric
