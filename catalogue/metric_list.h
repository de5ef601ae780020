#pragma once

#include "metric/metric_list.h"

namespace Metric {

/// The one list of the process: the metrics of the program, then the plug-ins, which are looked for in the
/// directory "plugins" beside the program and, if nothing can be written there, in the user's data directory
/// as well.
///
/// Built by the first call, which a program makes on its main thread, and never destroyed. Any thread.
CMetricList& GetMetricList();

}  // namespace Metric
