#pragma once

#include <memory>

#include "metric/metric_list.h"

namespace Gpu {
class GpuRuntime;
}

namespace Metric {

/// The one list of the process: the metrics of the program; if there is a card, those that run on it; then
/// the plug-ins, which are looked for in the directory "plugins" beside the program and, if nothing can be
/// written there, in the user's data directory as well.
///
/// Built by the first call, which a program makes on its main thread, and never destroyed. Any thread.
CMetricList& GetMetricList();

/// From now on the host stands in for the cards of the machine. Before the first `GetMetricList`.
void EmulateGpu();

/// A list of its own with the devices of `gpuRuntime`, which outlives it; null for none.
std::unique_ptr<CMetricList> MakeMetricList(Gpu::GpuRuntime* gpuRuntime);

}  // namespace Metric
