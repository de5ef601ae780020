#include "catalogue/metric_list.h"

#include <gtest/gtest.h>

#include <set>

#include "gpu/host_runtime.h"

namespace Metric {
namespace {

const std::vector<int> kAll = {ComponentY, ComponentU, ComponentV, ComponentR,
                               ComponentG, ComponentB, ComponentL};

const std::vector<int> kY = {ComponentY};

/// What users of the list see and settings store.
struct BuiltIn {
    int kind;
    const wchar_t* id;
    const wchar_t* name;
    std::vector<int> components;
    int inputsPlain, inputsVisual;
    bool higherIsBetter;
    const wchar_t* unit;
};

const std::vector<BuiltIn> kBuiltIns = {
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

/// Behind the built-in metrics, for machines with a card.
const std::vector<BuiltIn> kGpuMetrics = {
    {11, L"ssim_cuda", L"SSIM (CUDA)", kY, 2, 2, true, L""},
    {16, L"msssim_cuda", L"MSSSIM (CUDA)", kY, 2, 2, true, L""},
    {13, L"3ssim_cuda", L"3SSIM (CUDA)", kY, 2, 2, true, L""},
};

/// A machine that says that it has so many devices; they are the host. An answer of -1: it can't tell.
struct StubbedDevices : Gpu::HostRuntime {
    explicit StubbedDevices(int devices) : answer(devices) {}

    Gpu::Status GetDeviceCount(int& count) override {
        count = answer;
        return answer < 0 ? 100 : Gpu::kSuccess;
    }
    Gpu::Status GetMultiProcessorCount(int device, int& count) override {
        count = 10 - device;
        return Gpu::kSuccess;
    }

    int answer;
};

void ExpectMetrics(const CMetricList& list, int index, const std::vector<BuiltIn>& expected, bool needsGpu) {
    ASSERT_GE(list.GetCount(), index + static_cast<int>(expected.size()));
    for (const auto& c : expected) {
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
        EXPECT_EQ(needsGpu, list.NeedsGpu(index));
        EXPECT_EQ(L"", list.Info(index).pluginPath);
        MetricParameters parameters;
        parameters.width = parameters.height = 8;
        const auto instance = list.CreateInstance(index, parameters);
        ASSERT_NE(nullptr, instance);
        EXPECT_EQ(c.id, instance->GetId());
        ++index;
    }
}

void ExpectPluginsOnly(const CMetricList& list, std::size_t index) {
    for (int i = static_cast<int>(index); i < list.GetCount(); ++i)
        EXPECT_EQ(kPluginKind, list.Info(i).kind) << i;
}

TEST(MetricList, MetricsStandInTheirOrder) {
    for (const int devices : {-1, 0, 1, 2}) {
        SCOPED_TRACE(devices);
        StubbedDevices stubbed(devices);
        const auto list = MakeMetricList(devices == 0 ? nullptr : &stubbed);
        ExpectMetrics(*list, 0, kBuiltIns, false);
        EXPECT_EQ(devices > 0, list->HasGpu());
        const std::size_t behind = devices > 0 ? kGpuMetrics.size() : 0;
        if (devices > 0) ExpectMetrics(*list, static_cast<int>(kBuiltIns.size()), kGpuMetrics, true);
        ExpectPluginsOnly(*list, kBuiltIns.size() + behind);
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
