#include "app/rules/metric_choice.h"

#include <algorithm>
#include <utility>

namespace {

void Select(MeasurementJob& job, SelectedMetric selected) {
    job.selection.clear();
    job.selection.insert(std::move(selected));
}

/// Null for a metric without an entry.
const std::wstring* SettingsOf(const MeasurementJob& job, int metricIndex) {
    const auto index = static_cast<std::size_t>(metricIndex);
    return index < job.metricSettings.size() ? &job.metricSettings[index] : nullptr;
}

}  // namespace

SelectedMetric SelectionOf(const MeasurementJob& job) {
    return job.selection.empty() ? SelectedMetric() : *job.selection.begin();
}

void ChooseMetric(MeasurementJob& job, int metricIndex, const Metric::CMetricList& metrics) {
    if (metricIndex < 0 || metricIndex >= metrics.GetCount()) return;

    SelectedMetric selected = SelectionOf(job);
    const std::vector<int>& components = metrics.GetComponents(metricIndex);
    if (!components.empty() && !SupportsComponent(metrics, metricIndex, selected.component))
        selected.component = components.front();
    selected.metricIndex = metricIndex;
    const std::wstring* settings = SettingsOf(job, metricIndex);
    selected.settings = settings ? *settings : std::wstring();
    Select(job, std::move(selected));
}

void ChooseComponent(MeasurementJob& job, int component) {
    SelectedMetric selected = SelectionOf(job);
    selected.component = component;
    Select(job, std::move(selected));
}

bool SupportsComponent(const Metric::CMetricList& metrics, int metricIndex, int component) {
    const std::vector<int>& components = metrics.GetComponents(metricIndex);
    return std::find(components.begin(), components.end(), component) != components.end();
}

std::wstring SelectedSettings(const MeasurementJob& job) {
    const std::wstring* settings = SettingsOf(job, SelectionOf(job).metricIndex);
    return settings ? *settings : std::wstring();
}

void StoreSelectedSettings(MeasurementJob& job, const std::wstring& line) {
    SelectedMetric selected = SelectionOf(job);
    const auto index = static_cast<std::size_t>(selected.metricIndex);
    if (index >= job.metricSettings.size()) return;
    job.metricSettings[index] = line.substr(0, kMaxMetricSettings);
}
