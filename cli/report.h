#pragma once

#include <string>
#include <vector>

#include "engine/model/finish_record.h"
#include "engine/model/measurement_job.h"

/// A finished run as the headless program tells it.
struct RunReport {
    const FinishRecord& finish;
    const RunParameters& run;
    const std::vector<std::wstring>& logLines;  ///< without the time
};

/// One line a result: name, component, files, average with the unit; then the numbers of the bad frames if
/// any were asked for and saved.
std::string TextReport(const RunReport& report);

/// The whole run as one JSON object, ended by a line feed. Numbers have 9 significant digits, so that a float
/// survives; what isn't finite is null.
std::string JsonReport(const RunReport& report);

/// The metric list: index, id, name, components, inputs, unit of each metric; as text or as a JSON array.
std::string MetricListText();
std::string MetricListJson();
