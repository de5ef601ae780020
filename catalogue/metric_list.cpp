#include "catalogue/metric_list.h"

#include "gpu/device.h"
#include "gpu/host_runtime.h"
#include "gpu/msssim_cuda.h"
#include "gpu/ssim_cuda.h"
#include "gpu/three_ssim_cuda.h"
#include "metrics/blocking.h"
#include "metrics/blurring.h"
#include "metrics/delta.h"
#include "metrics/msad.h"
#include "metrics/mse.h"
#include "metrics/msssim_fast.h"
#include "metrics/msssim_precise.h"
#include "metrics/psnr.h"
#include "metrics/psnr_variants.h"
#include "metrics/ssim_fast.h"
#include "metrics/ssim_precise.h"
#include "metrics/stssim.h"
#include "metrics/three_ssim.h"
#include "metrics/vqm.h"
#include "platform/program_directory.h"

namespace Metric {

namespace {

template <class T>
std::unique_ptr<IMetric> Make(const MetricParameters& parameters) {
    return std::make_unique<T>(parameters);
}

/// The metrics of the program in the order of the list. A kind stays with its metric for ever.
constexpr struct {
    int kind;
    std::unique_ptr<IMetric> (*create)(const MetricParameters& parameters);
} kBuiltIns[] = {
    {5, Make<CPSNRMetric>},        // psnr
    {6, Make<CPsnr256Metric>},     // psnr_256
    {7, Make<CApsnrMetric>},       // apsnr
    {8, Make<CApsnr256Metric>},    // apsnr_256
    {9, Make<CSSIMMetric>},        // ssim_fast
    {10, Make<CSSIMMetricIpp>},    // ssim_precise
    {12, Make<C3SSIMMetricIpp>},   // 3ssim
    {17, Make<CSTSSIMMetric>},     // stssim
    {14, Make<CMSSSIMMetric>},     // msssim_fast
    {15, Make<CMSSSIMMetricIpp>},  // msssim_precise
    {18, Make<CVQMMetric>},        // vqm
    {0, Make<CBlockingMetric>},    // blocking_metric
    {1, Make<CBlurringMetric>},    // blurring_metric
    {2, Make<CDeltaMetric>},       // delta
    {3, Make<CMSADMetric>},        // msad
    {4, Make<CMSEMetric>},         // mse
};

template <class T>
std::unique_ptr<IMetric> MakeOn(const Gpu::GpuDevice& device, const MetricParameters& parameters) {
    return std::make_unique<T>(device, parameters);
}

/// Those that need a device; they are entered behind the others if there is one.
constexpr struct {
    int kind;
    std::unique_ptr<IMetric> (*create)(const Gpu::GpuDevice& device, const MetricParameters& parameters);
} kGpuMetrics[] = {
    {11, MakeOn<CSSIMCUDAMetric>},    // ssim_cuda
    {16, MakeOn<CMSSSIMCUDAMetric>},  // msssim_cuda
    {13, MakeOn<C3SSIMCUDAMetric>},   // 3ssim_cuda
};

constexpr const wchar_t* kPluginDirectory = L"plugins";

void AppendGpuMetrics(CMetricList& list, Gpu::GpuRuntime* runtime) {
    Gpu::HostRuntime host;  // tells what a metric is without a start of the card
    Gpu::GpuDevice device;
    if (Gpu::SelectGpuDevice(runtime, device) <= 0) return;
    for (const auto& metric : kGpuMetrics) {
        const auto makeOn = [create = metric.create](const Gpu::GpuDevice& where) {
            return [create, where](const MetricParameters& parameters) {
                return Gpu::IsUsable(where) ? create(where, parameters) : nullptr;
            };
        };
        list.Append(metric.kind, makeOn(device), makeOn({&host, 0}));
    }
}

void AppendAllPlugins(CMetricList& list) {
    const std::wstring own = ProgramDirectory();
    const std::wstring writable = WritableProgramDirectory();
    if (!own.empty()) list.AppendPlugins(own + kPluginDirectory);
    if (writable != own) list.AppendPlugins(writable + kPluginDirectory);
}

// Of `GetMetricList`.
Gpu::GpuRuntime* hostInstead = nullptr;

}  // namespace

CMetricList& GetMetricList() {
    // Kept to the end of the process: other objects with static lifetime may ask it.
    static CMetricList& list =
        *MakeMetricList(hostInstead != nullptr ? hostInstead : Gpu::DeviceRuntime()).release();
    return list;
}

void EmulateGpu() {
    static Gpu::HostRuntime host;
    hostInstead = &host;
}

std::unique_ptr<CMetricList> MakeMetricList(Gpu::GpuRuntime* gpuRuntime) {
    auto list = std::make_unique<CMetricList>();
    for (const auto& metric : kBuiltIns) list->Append(metric.kind, metric.create);
    AppendGpuMetrics(*list, gpuRuntime);
    AppendAllPlugins(*list);
    return list;
}

}  // namespace Metric
