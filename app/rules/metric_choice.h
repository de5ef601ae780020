#pragma once

#include <string>

#include "catalogue/metric_list.h"
#include "engine/model/measurement_job.h"

/// The selection of the main dialog has exactly one entry. Before anything was selected it reads as the first
/// metric on Y.
SelectedMetric SelectionOf(const MeasurementJob& job);

/// Selects a metric of the list with its stored settings. The component stays if the metric supports it,
/// otherwise it becomes the first supported one. Nothing happens for an index that isn't in the list, as of a
/// drop-down without a selected item.
void ChooseMetric(MeasurementJob& job, int metricIndex, const Metric::CMetricList& metrics);

void ChooseComponent(MeasurementJob& job, int component);

bool SupportsComponent(const Metric::CMetricList& metrics, int metricIndex, int component);

/// The settings string of the selected metric, as runs and settings take it.
std::wstring SelectedSettings(const MeasurementJob& job);

constexpr std::size_t kMaxMetricSettings = 260;

/// Stores what the configuration line of the selected metric became, at most `kMaxMetricSettings` characters.
void StoreSelectedSettings(MeasurementJob& job, const std::wstring& line);
