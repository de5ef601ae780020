#pragma once

#include "catalogue/metric_list.h"
#include "metric/metric_plugin.h"
#include "platform/program_directory.h"
#include "tests/fuzz/fuzz_input.h"

/// The process's list of metrics, with the plug-in that is built beside the fuzzer's program. It ends the
/// program if that plug-in can't be loaded.
inline const Metric::CMetricList& MetricsWithPlugins() {
    // A library with the fuzzer's counters can't be unloaded again: this keeps it.
    static Metric::CMetricPlugin kept;
    static const bool isKept = kept.Load(ProgramDirectory() + L"plugins/roi_psnr.tlp");
    static const Metric::CMetricList& list = Metric::GetMetricList();
    int index = 0;
    Require(isKept && list.FindById(L"roi_psnr", index));
    return list;
}
