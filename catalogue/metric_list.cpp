#include "catalogue/metric_list.h"

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

constexpr const wchar_t* kPluginDirectory = L"plugins";

void AppendAllPlugins(CMetricList& list) {
    const std::wstring own = ProgramDirectory();
    const std::wstring writable = WritableProgramDirectory();
    if (!own.empty()) list.AppendPlugins(own + kPluginDirectory);
    if (writable != own) list.AppendPlugins(writable + kPluginDirectory);
}

}  // namespace

CMetricList& GetMetricList() {
    // Kept to the end of the process: other objects with static lifetime may ask it.
    static CMetricList& list = *[] {
        auto* made = new CMetricList;
        for (const auto& metric : kBuiltIns) made->Append(metric.kind, metric.create);
        AppendAllPlugins(*made);
        return made;
    }();
    return list;
}

}  // namespace Metric
