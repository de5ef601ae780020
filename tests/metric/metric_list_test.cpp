#include "metric/metric_list.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "metric/metric_plugin.h"
#include "platform/text.h"
#include "tests/temporary_directory.h"

namespace Metric {
namespace {

namespace fs = std::filesystem;

class MetricLists : public testing::Test {
protected:
    std::wstring Path(const char* name) const { return FromUtf8((directory / name).native()); }
    void Copy(const char* plugin, const char* name) const { fs::copy_file(plugin, directory / name); }

    TemporaryDirectory temporary;
    fs::path directory = temporary.Root();
};

TEST_F(MetricLists, MissingAndEmptyDirectoriesHoldNoPlugins) {
    CMetricList list;
    list.AppendPlugins(Path("missing"));
    list.AppendPlugins(Path("."));
    list.AppendPlugins(L"");
    EXPECT_EQ(0, list.GetCount());
    EXPECT_FALSE(fs::exists(directory / "missing"));
    EXPECT_TRUE(fs::exists(directory));
}

TEST_F(MetricLists, GoodPluginsAreFoundInTheOrderOfTheirNames) {
    for (const char* name : {"c.tlp", "a.TLP", "\xFF.tlp", "plugin.so", "d.tlp.old"}) Copy(PLUGIN_IN_C, name);
    Copy(PLUGIN_IN_C, "b.cut.tlp");
    fs::resize_file(directory / "b.cut.tlp", fs::file_size(PLUGIN_IN_C) / 2);
    Copy(PLUGIN_WITHOUT_CREATE, "b.noexport.tlp");
    Copy(HOSTILE_PLUGIN, "b.hostile.tlp");  // its id is empty
    std::ofstream(directory / "b.text.tlp") << "no library";
    fs::create_directory(directory / "b.directory.tlp");
    fs::create_symlink("nowhere", directory / "b.link.tlp");

    CMetricList list;
    list.AppendPlugins(FromUtf8(directory.native()));
    ASSERT_EQ(3, list.GetCount());
    EXPECT_EQ(Path("a.TLP"), list.Info(0).pluginPath);
    EXPECT_EQ(Path("c.tlp"), list.Info(1).pluginPath);
    EXPECT_EQ(Path("\xFF.tlp"), list.Info(2).pluginPath);
    int index = -1;
    EXPECT_TRUE(list.FindById(L"plugin_in_c", index));
    EXPECT_EQ(0, index) << "the first of equal ids";

    const MetricInfo& info = list.Info(2);
    EXPECT_EQ(19, info.kind);
    EXPECT_EQ(L"Plug-in in C", info.name);
    EXPECT_EQ(1, list.GetInputCount(2, false));
    EXPECT_EQ(2, list.GetInputCount(2, true));
    EXPECT_EQ(1499u, list.GetDefaultSettings(2).size());
    EXPECT_FALSE(list.HasGpu());
}

TEST_F(MetricLists, InstancesLoadTheFileAgain) {
    Copy(PLUGIN_IN_C, "a.tlp");
    CMetricList list;
    list.AppendPlugins(FromUtf8(directory.native()));
    ASSERT_EQ(1, list.GetCount());
    MetricParameters small, large;
    small.width = small.height = 8;
    large.width = large.height = 9;
    const auto first = list.CreateInstance(0, small);
    const auto second = list.CreateInstance(0, large);
    ASSERT_NE(nullptr, first);
    ASSERT_NE(nullptr, second);
    EXPECT_TRUE(first->Configure(L"0: 8 by 8")) << "objects of their own";
    EXPECT_TRUE(second->Configure(L"0: 9 by 9"));

    fs::remove(directory / "a.tlp");
    EXPECT_EQ(nullptr, list.CreateInstance(0, small));
    EXPECT_TRUE(first->Configure(L"0: 8 by 8")) << "what is loaded works on";
}

TEST_F(MetricLists, WhatIsNotInTheListIsEmpty) {
    CMetricList list;
    list.Append(7, [](const MetricParameters& parameters) {
        auto metric = std::make_unique<CMetricPlugin>();
        EXPECT_TRUE(metric->Load(FromUtf8(PLUGIN_IN_C)));
        EXPECT_TRUE(metric->Init(parameters));
        EXPECT_TRUE(metric->Configure(L"0: 160 by 160"));
        return metric;
    });
    list.Append(8, [](const MetricParameters&) { return nullptr; });
    ASSERT_EQ(1, list.GetCount());
    EXPECT_EQ(7, list.Info(0).kind);
    for (const int index : {-1, 1, 1 << 30}) {
        SCOPED_TRACE(index);
        EXPECT_EQ(L"", list.GetId(index));
        EXPECT_TRUE(list.GetComponents(index).empty());
        EXPECT_EQ(0, list.GetInputCount(index, true));
        EXPECT_EQ(nullptr, list.CreateInstance(index, {}));
    }
    int index = 5;
    for (const wchar_t* id : {L"", L"plugin_in", L"plugin_in_c ", L"PLUGIN_IN_C"}) {
        EXPECT_FALSE(list.FindById(id, index));
    }
    EXPECT_EQ(5, index);
}

}  // namespace
}  // namespace Metric
