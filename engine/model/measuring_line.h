#pragma once

#include <string>
#include <vector>

#include "catalogue/metric_list.h"
#include "engine/model/selected_metric.h"

/// The line by which a progress view announces a run, such as "01:05:09 : Measuring YYUV-PSNR, UYUV-PSNR on
/// a.yuv b.yuv ": the local time by a 12-hour clock, component and display name of each metric, and each
/// file's name without its directory and followed by a blank.
std::wstring MeasuringLine(const MetricSelection& selection, const std::vector<std::wstring>& names,
                           const Metric::CMetricList& metrics = Metric::GetMetricList());
