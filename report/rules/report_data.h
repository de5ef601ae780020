#pragma once

#include <map>
#include <string>
#include <vector>

#include "report/rules/report_parameters.h"
#include "report/rules/report_series.h"

namespace Report {

/// What the plots show, gathered once from the results.
struct ReportData {
    int firstFrame = 0;  // of the frames that all results share
    int lastFrame = 0;
    std::map<int, Series> series;  // by file
    ValueRange values;
    std::wstring valueTitle;
    const std::vector<int>* badFrames = nullptr;
    std::map<int, std::wstring> paths;  // of all files, also those without a curve
};

ReportData GatherData(const ReportParameters& parameters,
                      const Metric::CMetricList& metrics = Metric::GetMetricList());

}  // namespace Report
