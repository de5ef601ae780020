#pragma once

#include <string>
#include <vector>

#include "catalogue/metric_list.h"
#include "engine/model/results_store.h"

/// A result of a metric as a run would leave it.
struct Result {
    const wchar_t* metric;
    std::vector<std::wstring> files;
    std::vector<float> values = {};
    int component = 0;
    std::wstring name = {};
};

/// Adds it with the number `id`, its values from frame 0 on.
inline void AddResult(CResultsStore& store, int id, const Result& result) {
    ResultRecord record;
    Metric::GetMetricList().FindById(result.metric, record.metricIndex);
    record.component = result.component;
    record.name = result.name;
    for (const std::wstring& file : result.files) record.files.emplace_back().name = file;
    store.SetResultRecord(id, record);
    int frame = 0;
    for (const float value : result.values) store.AddValue(id, frame++, value);
}
