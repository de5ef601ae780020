#include "tests/fuzz/metrics_with_plugins.h"

#include "catalogue/metric_list.h"
#include "metric/metric_plugin.h"
#include "platform/program_directory.h"
#include "tests/fuzz/require.h"

const Metric::CMetricList& MetricsWithPlugins() {
    // A library with the fuzzer's counters can't be unloaded again: this keeps it.
    static const bool isKept = [] {
        static Metric::CMetricPlugin kept;
        return kept.Load(ProgramDirectory() + L"plugins/roi_psnr.tlp");
    }();
    Require(isKept);
    static const Metric::CMetricList& list = Metric::GetMetricList();
    int index = 0;
    Require(list.FindById(L"roi_psnr", index));
    return list;
}
