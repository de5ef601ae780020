#pragma once

#include "metric/metric_list.h"

/// The process's list of metrics, with the plug-in that is built beside the fuzzer's program. It ends the
/// program if that plug-in can't be loaded, or a GPU's metrics are in the list.
const Metric::CMetricList& MetricsWithPlugins();
