#pragma once

#include <string>

#include "catalogue/metric_list.h"
#include "engine/model/results_store.h"

/// A result's metric as output names show it: id and lower-case component, such as "psnr_yyuv".
std::wstring MetricNameItem(const ResultRecord& record,
                            const Metric::CMetricList& metrics = Metric::GetMetricList());

/// The metrics of a run as output names show them: the item of each result, those that differ in the order of
/// their first appearance, joined by "_".
std::wstring MetricNamePart(const CResultsStore& store,
                            const Metric::CMetricList& metrics = Metric::GetMetricList());

/// The files of a run as output names show them: names without directory and extension, joined likewise.
std::wstring VideoNamePart(const CResultsStore& store);

/// `path` without its directory and without everything from the name's last "." on.
std::wstring BaseName(const std::wstring& path);

/// Ends `directory` with a separator. An empty one stays empty: the current directory.
void EndWithSeparator(std::wstring& directory);

/// `EndWithSeparator`, and makes the directory with those above it if it is missing. One that can't be
/// made shows when a file in it can't be written.
void PrepareOutputDirectory(std::wstring& directory);
