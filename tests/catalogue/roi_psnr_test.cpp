#include <gtest/gtest.h>

#include "catalogue/metric_list.h"
#include "metric/metric_base.h"
#include "metric/metric_image.h"
#include "video/video_image.h"

namespace Metric {
namespace {

std::unique_ptr<IMetric> MakeRoiPsnr(int component, int width, int height, const wchar_t* settings) {
    int index = -1;
    EXPECT_TRUE(GetMetricList().FindById(L"roi_psnr", index));
    auto metric = GetMetricList().CreateInstance(index, {component, width, height, 0, {}, false, false});
    EXPECT_TRUE(metric->Configure(settings));
    return metric;
}

TEST(RoiPsnr, MeasuresTheRegionAndTheRest) {
    const auto metric = MakeRoiPsnr(ComponentV, 4, 2, L"x=1 y=0 w=2 h=1");
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
    for (const MetricValue& equal : metric->Measure({&first, &first})) EXPECT_EQ(100, equal.value);
    // 10 log10(255^2 / error) of 1, 1/2, 4 and 2, by another program to five places. The averages are those of
    // the mean error of both frames, not the mean of their values.
    const auto averages = metric->GetAverages(false);
    ASSERT_TRUE(values.size() == 2 && averages.size() == 2);
    const float expected[2][2] = {{48.13080f, 51.14110f}, {42.11020f, 45.12050f}};
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(info[i].resultId, values[i].resultId);
        EXPECT_NEAR(expected[i][0], values[i].value, 1e-5);
        EXPECT_NEAR(expected[i][1], averages[i].value, 1e-5);
    }

    const auto whole = MakeRoiPsnr(ComponentL, 4, 2, L"w=4 h=999999");
    EXPECT_EQ(1u, whole->GetResultInfo(false).size()) << "the region is the picture";
    std::fill_n(second.GetL(), 8, 1.0f);
    EXPECT_EQ(40, whole->Measure({&first, &second}).at(0).value) << "the peak of L is 100";
}

TEST(RoiPsnr, RefusesSettingsItCannotFollow) {
    const auto metric = MakeRoiPsnr(ComponentY, 4, 2, L"");
    for (const wchar_t* good : {L"  h=1 w=2\tx=3 y=1 ", L"x=0 x=1"}) EXPECT_TRUE(metric->Configure(good));
    for (const wchar_t* bad : {L"x", L"x=", L"x=-1", L"x=1,y=0", L"z=1", L"=1", L"x 1", L"w=0", L"x=4",
                               L"y=2", L"w=9999999", L"x=1 y=0 w=2 h=1 and"}) {
        EXPECT_FALSE(metric->Configure(bad)) << testing::Message() << bad;
    }
}

TEST(RoiPsnr, PaintsDifferencesAndTheRegionsEdge) {
    const auto metric = MakeRoiPsnr(ComponentY, 5, 5, L"x=1 y=1 w=3 h=3");
    CMetricImage first(5, 5), second(5, 5);
    const auto at = [](int x, int y) { return 5 * y + x; };
    first.GetY()[at(2, 2)] = first.GetY()[at(3, 1)] = 10;
    second.GetY()[at(0, 4)] = 10;
    second.GetY()[at(4, 0)] = 200;

    rkVideoImage target;
    target.Create(5, 5, RGB24, 0);
    EXPECT_EQ(2u, metric->MeasureAndVisualize({&first, &second}, target).size());
    const std::tuple<const char*, int, int, std::vector<int>> kCases[] = {
        {"difference inside", 2, 2, {80, 80, 80}}, {"difference outside", 0, 4, {80, 0, 0}},
        {"greatest level", 4, 0, {255, 0, 0}},     {"edge, equal", 1, 1, {0, 255, 0}},
        {"edge, different", 3, 1, {0, 255, 0}},    {"equal", 4, 4, {0, 0, 0}},
    };
    for (const auto& [what, x, y, blueGreenRed] : kCases) {
        const std::uint8_t* pixel = target.Row(0, y) + 3 * x;
        EXPECT_EQ(blueGreenRed, std::vector<int>(pixel, pixel + 3)) << what;
    }
}

}  // namespace
}  // namespace Metric
