#include "metric/metric_plugin.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "metric/metric_base.h"
#include "metric/metric_image.h"
#include "platform/text.h"
#include "video/video_image.h"

namespace Metric {
namespace {

const std::wstring kPluginInC = FromUtf8(PLUGIN_IN_C);
const std::wstring kHostilePlugin = FromUtf8(HOSTILE_PLUGIN);

std::vector<int> Ids(const std::vector<MetricValue>& values) {
    std::vector<int> ids;
    for (const MetricValue& value : values) ids.push_back(value.resultId);
    return ids;
}

TEST(MetricPlugin, EveryEntryOfATableFromCIsInItsPlace) {
    CMetricPlugin plugin;
    ASSERT_TRUE(plugin.Load(kPluginInC));
    EXPECT_EQ(L"plugin_in_c", plugin.GetId());
    EXPECT_EQ(L"Plug-in in C", plugin.GetName());
    EXPECT_EQ(L"steps", plugin.GetUnit());
    EXPECT_EQ(L"https://c.test", plugin.GetInfoUrl());
    EXPECT_EQ((std::vector{3, 0}), plugin.GetComponents());
    EXPECT_EQ(1, plugin.GetInputCount(false));
    EXPECT_EQ(2, plugin.GetInputCount(true));
    EXPECT_EQ(8, plugin.GetBlockWidth());
    EXPECT_EQ(4, plugin.GetBlockHeight());
    EXPECT_TRUE(plugin.IsHigherBetter());
    EXPECT_TRUE(plugin.IsConfigurable());
    EXPECT_EQ(std::wstring(1499, L'd'), plugin.GetDefaultSettings()) << "fits the fourth buffer";

    MetricParameters parameters;
    parameters.component = 3;
    parameters.width = 20;
    parameters.height = 10;
    const int firstId = *CMetric::ResultIdCounter();
    ASSERT_TRUE(plugin.Init(parameters));
    EXPECT_EQ(firstId + 2, *CMetric::ResultIdCounter());
    EXPECT_FALSE(plugin.Configure(L"3: 20 by 11"));
    EXPECT_TRUE(plugin.Configure(L"3: 20 by 10"));

    const auto info = plugin.GetResultInfo(true);
    ASSERT_EQ(2u, info.size());
    EXPECT_EQ(firstId, info[0].resultId);
    EXPECT_EQ((std::vector{0, 1}), info[0].files);
    EXPECT_EQ(L"planes", info[0].name);
    EXPECT_EQ(firstId + 1, info[1].resultId);
    EXPECT_EQ(std::vector{1}, info[1].files);
    EXPECT_EQ(L"size", info[1].name);
    EXPECT_EQ(1u, plugin.GetResultInfo(false).size());

    CMetricImage first(20, 10), second(9, 5);
    const std::vector<float*> planes = {first.GetR(), first.GetG(), first.GetB(), first.GetY(),
                                        first.GetU(), first.GetV(), first.GetL()};
    for (std::size_t i = 0; i < planes.size(); ++i) *planes[i] = static_cast<float>(i + 1);
    const auto values = plugin.Measure({&first, &second});
    ASSERT_EQ((std::vector{firstId, firstId + 1}), Ids(values));
    EXPECT_EQ(7654321, values[0].value);
    EXPECT_EQ(905, values[1].value);

    rkVideoImage target;
    target.Create(20, 10, RGB24, 0);
    EXPECT_EQ(2u, plugin.MeasureAndVisualize({&first, &second}, target).size());
    EXPECT_EQ(200, target.Data()[target.Stride()]);

    const auto averages = plugin.GetAverages(true);
    ASSERT_EQ(std::vector{firstId + 1}, Ids(averages));
    EXPECT_EQ(2.5f, averages[0].value);
    EXPECT_EQ(2.0f, plugin.GetAverages(false)[0].value);
}

TEST(MetricPlugin, SaysNothingWithoutAnObject) {
    for (const char* way : {"null", "throw"}) {
        SCOPED_TRACE(way);
        setenv("HOSTILE_PLUGIN", way, 1);
        CMetricPlugin plugin;
        EXPECT_FALSE(plugin.Load(kHostilePlugin));
        EXPECT_EQ(L"", plugin.GetId());
        EXPECT_TRUE(plugin.GetComponents().empty());
        EXPECT_TRUE(plugin.GetResultInfo(false).empty());
        EXPECT_TRUE(plugin.Measure({}).empty());
        EXPECT_FALSE(plugin.Init({}));
    }
    unsetenv("HOSTILE_PLUGIN");
    EXPECT_FALSE(CMetricPlugin().Load(FromUtf8(PLUGIN_WITHOUT_CREATE)));
}

TEST(MetricPlugin, LimitsWhatItIsTold) {
    constexpr struct {
        const wchar_t* settings;
        std::size_t results, files, components, nameLength, defaultLength;
    } kCases[] = {
        {L"fair", 1, 2, 0, 0, 0},
        {L"results 10", 10, 2, 0, 0, 0},
        {L"results 11", 0, 0, 0, 0, 0},
        {L"results 2000000000", 0, 0, 0, 0, 0},
        {L"results 0", 0, 0, 0, 0, 0},
        {L"results -3", 0, 0, 0, 0, 0},
        {L"files 9", 1, 9, 0, 0, 0},
        {L"files 1000", 1, 9, 0, 0, 0},
        {L"files -1", 1, 0, 0, 0, 0},
        {L"components 5", 1, 2, 3, 0, 0},  // -2 and -1 are none
        {L"components 1000", 1, 2, 7, 0, 0},
        {L"components -5", 1, 2, 0, 0, 0},
        {L"text 1000", 1, 2, 0, 259, 259},
        {L"throw", 0, 0, 0, 0, 0},
    };
    CMetricImage image(1, 1);
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.settings);
        CMetricPlugin plugin;
        ASSERT_TRUE(plugin.Load(kHostilePlugin));
        ASSERT_TRUE(plugin.Configure(c.settings));
        EXPECT_EQ(c.results, plugin.Measure({&image, &image}).size());
        EXPECT_EQ(c.results, plugin.GetAverages(true).size());
        const auto info = plugin.GetResultInfo(true);
        ASSERT_EQ(c.results, info.size());
        if (!info.empty()) {
            EXPECT_EQ(c.files, info.back().files.size());
            EXPECT_EQ(c.nameLength, info.back().name.size());
        }
        EXPECT_EQ(c.components, plugin.GetComponents().size());
        EXPECT_EQ(c.nameLength, plugin.GetName().size());
        EXPECT_EQ(c.defaultLength, plugin.GetDefaultSettings().size());
        EXPECT_GE(plugin.GetBlockWidth(), 1);
    }
}

TEST(MetricPlugin, CatchesAndPassesOn) {
    CMetricPlugin plugin;
    ASSERT_TRUE(plugin.Load(kHostilePlugin));
    const auto values = plugin.Measure({});
    ASSERT_EQ(std::vector{-7}, Ids(values)) << "an id of its own";
    EXPECT_TRUE(std::isnan(values[0].value));
    MetricParameters parameters;
    parameters.width = -1;
    EXPECT_FALSE(plugin.Init(parameters));
    EXPECT_FALSE(plugin.Configure(L"refuse"));
    ASSERT_TRUE(plugin.Configure(L"throw"));
    EXPECT_EQ(0, plugin.GetInputCount(false));
    EXPECT_EQ(1, plugin.GetBlockHeight());
    EXPECT_FALSE(plugin.IsConfigurable());
    EXPECT_FALSE(plugin.IsHigherBetter());
}  // ReleaseMetric throws too

}  // namespace
}  // namespace Metric
