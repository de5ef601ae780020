#include "catalogue/metric_list.h"

#include <gtest/gtest.h>

#include <set>

namespace Metric {
namespace {

const std::vector<int> kAll = {ComponentY, ComponentU, ComponentV, ComponentR,
                               ComponentG, ComponentB, ComponentL};

const std::vector<int> kY = {ComponentY};

/// What users of the list see and settings store.
const struct {
    int kind;
    const wchar_t* id;
    const wchar_t* name;
    std::vector<int> components;
    int inputsPlain, inputsVisual;
    bool higherIsBetter;
    const wchar_t* unit;
} kBuiltIns[] = {
    {5, L"psnr", L"PSNR", kAll, 2, 2, true, L"dB"},
    {6, L"psnr_256", L"PSNR (256)", kAll, 2, 2, true, L"dB"},
    {7, L"apsnr", L"APSNR", kAll, 2, 2, true, L"dB"},
    {8, L"apsnr_256", L"APSNR (256)", kAll, 2, 2, true, L"dB"},
    {9, L"ssim_fast", L"SSIM (fast)", kY, 2, 2, true, L""},
    {10, L"ssim_precise", L"SSIM (precise)", kY, 2, 2, true, L""},
    {12, L"3ssim", L"3SSIM", kY, 2, 2, true, L""},
    {17, L"stssim", L"stSSIM", kY, 2, 2, true, L""},
    {14, L"msssim_fast", L"MSSSIM", kY, 2, 2, true, L""},
    {15, L"msssim_precise", L"MSSSIM (precise)", kY, 2, 2, true, L""},
    {18, L"vqm", L"VQM", kY, 2, 2, false, L""},
    {0, L"blocking_metric", L"Lumetry Blocking (MPEG-4) BETA", kY, 1, 1, false, L""},
    {1, L"blurring_metric", L"Lumetry Blurring BETA", {ComponentY, ComponentU, ComponentV}, 1, 2, true, L""},
    {2, L"delta", L"Delta", kAll, 2, 2, false, L""},
    {3, L"msad", L"MSAD", kAll, 2, 2, false, L""},
    {4, L"mse", L"MSE", kAll, 2, 2, false, L""},
};

TEST(MetricList, BuiltInMetricsStandInTheirOrder) {
    CMetricList& list = GetMetricList();
    ASSERT_GE(list.GetCount(), static_cast<int>(std::size(kBuiltIns)));
    int index = 0;
    for (const auto& c : kBuiltIns) {
        SCOPED_TRACE(testing::Message() << c.id);
        EXPECT_EQ(c.kind, list.Info(index).kind);
        EXPECT_EQ(c.id, list.GetId(index));
        EXPECT_EQ(c.name, list.GetName(index));
        EXPECT_EQ(c.components, list.GetComponents(index));
        EXPECT_EQ(c.inputsPlain, list.GetInputCount(index, false));
        EXPECT_EQ(c.inputsVisual, list.GetInputCount(index, true));
        EXPECT_EQ(c.higherIsBetter, list.IsHigherBetter(index));
        EXPECT_EQ(c.unit, list.GetUnit(index));
        EXPECT_FALSE(list.IsConfigurable(index));
        EXPECT_FALSE(list.NeedsGpu(index));
        EXPECT_EQ(L"", list.Info(index).pluginPath);
        const auto instance = list.CreateInstance(index, {});
        ASSERT_NE(nullptr, instance);
        EXPECT_EQ(c.id, instance->GetId());
        ++index;
    }
    for (; index < list.GetCount(); ++index) {
        EXPECT_TRUE(list.NeedsGpu(index) || list.Info(index).kind == kPluginKind) << index;
    }
}

TEST(MetricList, PluginsComeLastAndIdsAndKindsAreUnique) {
    CMetricList& list = GetMetricList();
    EXPECT_EQ(&list, &GetMetricList());
    int pluginIndex = 0;
    ASSERT_TRUE(list.FindById(L"roi_psnr", pluginIndex)) << "from plugins beside this program";
    std::set<std::wstring> ids;
    std::set<int> kinds;
    for (int index = 0; index < list.GetCount(); ++index) {
        EXPECT_TRUE(ids.insert(list.GetId(index)).second) << index;
        const bool isPlugin = list.Info(index).kind == kPluginKind;
        EXPECT_TRUE(isPlugin || kinds.insert(list.Info(index).kind).second) << index;
        EXPECT_TRUE(isPlugin || index < pluginIndex);
    }
}

}  // namespace
}  // namespace Metric
