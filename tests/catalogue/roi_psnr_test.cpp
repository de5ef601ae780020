#include <gtest/gtest.h>

#include "catalogue/metric_list.h"
#include "metric/metric_base.h"
#include "metric/metric_image.h"
#include "video/video_image.h"

namespace Metric {
namespace {

std::unique_ptr<IMetric> MakeRoiPsnr(int component, int width, int height) {
    int index = -1;
    EXPECT_TRUE(GetMetricList().FindById(L"roi_psnr", index));
    MetricParameters parameters;
    parameters.component = component;
    parameters.width = width;
    parameters.height = height;
    return GetMetricList().CreateInstance(index, parameters);
}

std::vector<float> Floats(const std::vector<MetricValue>& values) {
    std::vector<float> floats;
    for (const MetricValue& value : values) floats.push_back(value.value);
    return floats;
}

/// 10 log10(255^2 / error), by another program to five places.
constexpr float kPsnrOfOne = 48.13080f, kPsnrOfHalf = 51.14110f, kPsnrOfFour = 42.11020f,
                kPsnrOfTwo = 45.12050f;
constexpr float kLastPlace = 1e-5f;

TEST(RoiPsnr, MeasuresTheRegionAndTheRest) {
    const auto metric = MakeRoiPsnr(ComponentV, 4, 2);
    ASSERT_NE(nullptr, metric);
    ASSERT_TRUE(metric->Configure(L"x=1 y=0 w=2 h=1"));
    const auto info = metric->GetResultInfo(false);
    ASSERT_EQ(2u, info.size());
    EXPECT_EQ(L"inside", info[0].name);
    EXPECT_EQ(L"outside", info[1].name);
    EXPECT_NE(info[0].resultId, info[1].resultId);
    EXPECT_EQ((std::vector{0, 1}), info[1].files);

    CMetricImage first(4, 2), second(4, 2);
    const float differences[] = {2, 1, 1, -2, 2, 2, -2, 2};
    std::copy(std::begin(differences), std::end(differences), second.GetV());
    const auto values = metric->Measure({&first, &second});
    ASSERT_EQ(2u, values.size());
    EXPECT_EQ(info[0].resultId, values[0].resultId);
    EXPECT_EQ(info[1].resultId, values[1].resultId);
    EXPECT_NEAR(kPsnrOfOne, values[0].value, kLastPlace);
    EXPECT_NEAR(kPsnrOfFour, values[1].value, kLastPlace);
    EXPECT_EQ((std::vector{100.f, 100.f}), Floats(metric->Measure({&first, &first})));

    const auto averages = Floats(metric->GetAverages(false));
    ASSERT_EQ(2u, averages.size());
    EXPECT_NEAR(kPsnrOfHalf, averages[0], kLastPlace) << "of the mean error, not the mean of the values";
    EXPECT_NEAR(kPsnrOfTwo, averages[1], kLastPlace);
}

TEST(RoiPsnr, HasOneResultWhenTheRegionIsThePicture) {
    const auto metric = MakeRoiPsnr(ComponentL, 4, 2);
    ASSERT_TRUE(metric->Configure(L"w=4 h=999999"));
    EXPECT_EQ(1u, metric->GetResultInfo(false).size());
    CMetricImage first(4, 2), second(4, 2);
    std::fill_n(second.GetL(), 8, 1.0f);
    EXPECT_EQ(std::vector{40.f}, Floats(metric->Measure({&first, &second}))) << "the peak of L is 100";
}

TEST(RoiPsnr, RefusesSettingsItCannotFollow) {
    const auto metric = MakeRoiPsnr(ComponentY, 4, 2);
    for (const wchar_t* good : {L"", L"  h=1 w=2\tx=3 y=1 ", L"x=0 x=1"}) {
        EXPECT_TRUE(metric->Configure(good)) << testing::Message() << good;
    }
    for (const wchar_t* bad : {L"x", L"x=", L"x=-1", L"x=1,y=0", L"z=1", L"=1", L"x 1", L"w=0", L"x=4",
                               L"y=2", L"w=9999999", L"x=1 y=0 w=2 h=1 and"}) {
        EXPECT_FALSE(metric->Configure(bad)) << testing::Message() << bad;
    }
}

TEST(RoiPsnr, PaintsDifferencesAndTheRegionsEdge) {
    const auto metric = MakeRoiPsnr(ComponentY, 5, 5);
    ASSERT_TRUE(metric->Configure(L"x=1 y=1 w=3 h=3"));
    CMetricImage first(5, 5), second(5, 5);
    const auto at = [](int x, int y) { return 5 * y + x; };
    first.GetY()[at(2, 2)] = 10;
    first.GetY()[at(3, 1)] = 10;
    second.GetY()[at(0, 4)] = 10;
    second.GetY()[at(4, 0)] = 200;

    rkVideoImage target;
    target.Create(5, 5, RGB24, 0);
    EXPECT_EQ(2u, metric->MeasureAndVisualize({&first, &second}, target).size());
    const struct {
        const char* what;
        int x, y;
        std::vector<int> blueGreenRed;
    } kCases[] = {
        {"difference inside", 2, 2, {80, 80, 80}}, {"difference outside", 0, 4, {80, 0, 0}},
        {"greatest level", 4, 0, {255, 0, 0}},     {"edge, equal", 1, 1, {0, 255, 0}},
        {"edge, different", 3, 1, {0, 255, 0}},    {"equal", 4, 4, {0, 0, 0}},
    };
    for (const auto& c : kCases) {
        const std::uint8_t* pixel = target.Data() + c.y * target.Stride() + 3 * c.x;
        EXPECT_EQ(c.blueGreenRed, std::vector<int>(pixel, pixel + 3)) << c.what;
    }
}

}  // namespace
}  // namespace Metric
