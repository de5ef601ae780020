#include "metric/metric_plugin.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "metric/metric_base.h"
#include "metric/metric_image.h"
#include "metric/metric_list.h"
#include "platform/text.h"
#include "tests/temporary_directory.h"
#include "video/video_image.h"

namespace Metric {
namespace {

namespace fs = std::filesystem;

const std::wstring kPluginInC = FromUtf8(PLUGIN_IN_C), kHostilePlugin = FromUtf8(HOSTILE_PLUGIN);

std::vector<int> Ids(const std::vector<MetricValue>& values) {
    std::vector<int> ids;
    for (const MetricValue& value : values) ids.push_back(value.resultId);
    return ids;
}

MetricParameters Parameters(int component, int width, int height) {
    MetricParameters parameters;
    parameters.component = component;
    parameters.width = width;
    parameters.height = height;
    return parameters;
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

    const int firstId = *CMetric::ResultIdCounter();
    ASSERT_TRUE(plugin.Init(Parameters(3, 20, 10)));
    EXPECT_EQ(firstId + 2, *CMetric::ResultIdCounter());
    EXPECT_FALSE(plugin.Configure(L"3: 20 by 11"));
    EXPECT_TRUE(plugin.Configure(L"3: 20 by 10"));

    const auto info = plugin.GetResultInfo(true);
    ASSERT_EQ(2u, info.size());
    EXPECT_EQ(firstId, info[0].resultId);
    EXPECT_EQ((std::vector{0, 1}), info[0].files);
    EXPECT_EQ(L"planes", info[0].name);
    EXPECT_EQ(std::vector{1}, info[1].files);
    EXPECT_EQ(L"size", info[1].name);
    EXPECT_EQ(1u, plugin.GetResultInfo(false).size());

    CMetricImage first(20, 10), second(9, 5);
    float digit = 0;
    for (float* plane :
         {first.GetR(), first.GetG(), first.GetB(), first.GetY(), first.GetU(), first.GetV(), first.GetL()})
        *plane = ++digit;
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
        EXPECT_EQ(c.files, info.empty() ? 0 : info.back().files.size());
        EXPECT_EQ(c.nameLength, info.empty() ? 0 : info.back().name.size());
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
    EXPECT_FALSE(plugin.Init(Parameters(0, -1, 0)));
    EXPECT_FALSE(plugin.Configure(L"refuse"));
    ASSERT_TRUE(plugin.Configure(L"throw"));
    EXPECT_EQ(0, plugin.GetInputCount(false));
    EXPECT_EQ(1, plugin.GetBlockHeight());
    EXPECT_FALSE(plugin.IsConfigurable());
    EXPECT_FALSE(plugin.IsHigherBetter());
}  // ReleaseMetric throws too

class MetricLists : public testing::Test {
protected:
    std::wstring Path(const char* name) const { return FromUtf8((directory / name).native()); }
    void Copy(const char* plugin, const char* name) const { fs::copy_file(plugin, directory / name); }

    TemporaryDirectory temporary;
    fs::path directory = temporary.Root();
    CMetricList list;
};

TEST_F(MetricLists, GoodPluginsAreFoundInTheOrderOfTheirNames) {
    for (const std::wstring& empty : {std::wstring(), Path("missing"), Path(".")}) list.AppendPlugins(empty);
    EXPECT_EQ(0, list.GetCount());
    EXPECT_FALSE(fs::exists(directory / "missing"));

    for (const char* name : {"c.tlp", "a.TLP", "\xFF.tlp", "plugin.so", "d.tlp.old"}) Copy(PLUGIN_IN_C, name);
    Copy(PLUGIN_IN_C, "b.cut.tlp");
    fs::resize_file(directory / "b.cut.tlp", fs::file_size(PLUGIN_IN_C) / 2);
    Copy(PLUGIN_WITHOUT_CREATE, "b.noexport.tlp");
    Copy(HOSTILE_PLUGIN, "b.hostile.tlp");  // its id is empty
    temporary.Write("b.text.tlp", "no library");
    fs::create_directory(directory / "b.directory.tlp");
    fs::create_symlink("nowhere", directory / "b.link.tlp");

    list.AppendPlugins(Path(""));
    ASSERT_EQ(3, list.GetCount());
    EXPECT_EQ(Path("a.TLP"), list.Info(0).pluginPath);
    EXPECT_EQ(Path("c.tlp"), list.Info(1).pluginPath);
    EXPECT_EQ(Path("\xFF.tlp"), list.Info(2).pluginPath);
    int index = -1;
    EXPECT_TRUE(list.FindById(L"plugin_in_c", index));
    EXPECT_EQ(0, index) << "the first of equal ids";
    for (const wchar_t* id : {L"", L"plugin_in", L"plugin_in_c ", L"PLUGIN_IN_C"})
        EXPECT_FALSE(list.FindById(id, index));
    EXPECT_EQ(0, index) << "left alone";

    EXPECT_EQ(19, list.Info(2).kind);
    EXPECT_EQ(L"Plug-in in C", list.GetName(2));
    EXPECT_EQ(1, list.GetInputCount(2, false));
    EXPECT_EQ(2, list.GetInputCount(2, true));
    EXPECT_EQ(1499u, list.GetDefaultSettings(2).size());
    for (const int missing : {-1, 3, 1 << 30}) {
        SCOPED_TRACE(missing);
        EXPECT_EQ(L"", list.GetId(missing));
        EXPECT_TRUE(list.GetComponents(missing).empty());
        EXPECT_EQ(0, list.GetInputCount(missing, true));
        EXPECT_EQ(nullptr, list.CreateInstance(missing, {}));
    }
}

TEST_F(MetricLists, InstancesLoadTheFileAgain) {
    Copy(PLUGIN_IN_C, "a.tlp");
    list.AppendPlugins(Path(""));
    ASSERT_EQ(1, list.GetCount());
    const auto first = list.CreateInstance(0, Parameters(0, 8, 8));
    const auto second = list.CreateInstance(0, Parameters(0, 9, 9));
    ASSERT_TRUE(first != nullptr && second != nullptr);
    EXPECT_TRUE(first->Configure(L"0: 8 by 8")) << "objects of their own";
    EXPECT_TRUE(second->Configure(L"0: 9 by 9"));

    fs::remove(directory / "a.tlp");
    EXPECT_EQ(nullptr, list.CreateInstance(0, Parameters(0, 8, 8)));
    EXPECT_TRUE(first->Configure(L"0: 8 by 8")) << "what is loaded works on";
}

TEST_F(MetricLists, SamplesAreOf160By160) {
    list.Append(7, [](const MetricParameters& parameters) {
        auto metric = std::make_unique<CMetricPlugin>();
        EXPECT_TRUE(metric->Load(kPluginInC));
        EXPECT_TRUE(metric->Init(parameters));
        EXPECT_TRUE(metric->Configure(L"0: 160 by 160"));
        return metric;
    });
    list.Append(8, [](const MetricParameters&) { return nullptr; });
    ASSERT_EQ(1, list.GetCount());
    EXPECT_EQ(7, list.Info(0).kind);
}

}  // namespace
}  // namespace Metric
