#include "engine/model/measuring_line.h"

#include "metric/metric_types.h"
#include "platform/clock.h"
#include "platform/text.h"

std::wstring MeasuringLine(const MetricSelection& selection, const std::vector<std::wstring>& names,
                           const Metric::CMetricList& metrics) {
    std::wstring line = TimeOfDay(true) + L" : Measuring ";
    const wchar_t* separator = L"";
    for (const SelectedMetric& selected : selection) {
        line += separator;
        line += Metric::ComponentName(selected.component);
        line += L"-" + metrics.GetName(selected.metricIndex);
        separator = L", ";
    }

    line += L" on ";
    for (const std::wstring& name : names) {
        line += FileNamePart(name);
        line += L" ";
    }
    return line;
}
