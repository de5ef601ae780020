#include "catalogue/metric_list.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/gpu/stub_runtime.h"

namespace Metric {
namespace {

const std::vector<int> kAll = {ComponentY, ComponentU, ComponentV, ComponentR,
                               ComponentG, ComponentB, ComponentL};

const std::vector<int> kY = {ComponentY};

/// What users of the list see and settings store.
struct Entry {
    int kind;
    const wchar_t *id, *name;
    std::vector<int> components;
    int inputsPlain, inputsVisual;
    bool higherIsBetter;
    const wchar_t* unit;
};

const std::vector<Entry> kMetrics = {
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
    {11, L"ssim_cuda", L"SSIM (CUDA)", kY, 2, 2, true, L""},
    {16, L"msssim_cuda", L"MSSSIM (CUDA)", kY, 2, 2, true, L""},
    {13, L"3ssim_cuda", L"3SSIM (CUDA)", kY, 2, 2, true, L""},
};
constexpr int kHostMetrics = 16;  // the others are for machines with a card alone

TEST(MetricList, MetricsStandInTheirOrderAndPluginsLast) {
    for (const int devices : {-1, 0, 1, 2}) {  // -1: the machine can't tell
        Gpu::StubRuntime runtime(devices == 2 ? std::vector{10, 9} : std::vector{10});
        if (devices < 0) runtime.failingName = "GetDeviceCount";
        const auto list = MakeMetricList(devices == 0 ? nullptr : &runtime);
        const int builtIn = devices > 0 ? static_cast<int>(kMetrics.size()) : kHostMetrics;
        ASSERT_GT(list->GetCount(), builtIn) << "a plug-in stands beside this program";
        std::set<std::wstring> ids;
        std::set<int> kinds;
        for (int index = 0; index < list->GetCount(); ++index) {
            const MetricInfo& info = list->Info(index);
            SCOPED_TRACE(testing::Message() << devices << " devices, " << info.id);
            EXPECT_TRUE(ids.insert(info.id).second);
            EXPECT_EQ(index >= builtIn, info.kind == kPluginKind);
            if (index >= builtIn) continue;
            EXPECT_TRUE(kinds.insert(info.kind).second);
            const Entry& c = kMetrics[static_cast<std::size_t>(index)];
            EXPECT_EQ(c.kind, info.kind);
            EXPECT_EQ(c.id, info.id);
            EXPECT_EQ(c.name, info.name);
            EXPECT_EQ(c.components, info.components);
            EXPECT_EQ(c.inputsPlain, list->GetInputCount(index, false));
            EXPECT_EQ(c.inputsVisual, list->GetInputCount(index, true));
            EXPECT_EQ(c.higherIsBetter, info.higherIsBetter);
            EXPECT_EQ(c.unit, info.unit);
            EXPECT_FALSE(info.configurable);
            EXPECT_EQ(index >= kHostMetrics, info.needsGpu);
            EXPECT_EQ(L"", info.pluginPath);
            MetricParameters parameters;
            parameters.width = parameters.height = 8;
            const auto instance = list->CreateInstance(index, parameters);
            ASSERT_NE(nullptr, instance);
            EXPECT_EQ(c.id, instance->GetId());
        }
    }
}

}  // namespace
}  // namespace Metric
