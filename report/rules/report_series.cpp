#include "report/rules/report_series.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace Report {

namespace {

constexpr float kLeastHeight = 0.1F;

using Files = std::map<int, FileRecord>;

std::optional<int> ResultOf(const FileRecord& file, const CResultsStore& store, const Files& files) {
    std::optional<int> byName;
    for (const int id : store.GetResultIds()) {
        ResultRecord record;
        store.GetResultRecord(id, record);
        if (record.files.empty() || record.files.size() > 2) continue;
        const FileRecord& measured = record.files.back();
        if (measured == file) return id;
        const bool isAnother = std::any_of(
            files.begin(), files.end(), [&measured](const auto& other) { return other.second == measured; });
        if (!byName && measured.name == file.name && !isAnother) byName = id;
    }
    return byName;
}

Series SeriesOf(const CResultsStore& store, int resultId) {
    Series series;
    store.GetFirstFrame(resultId, series.first);
    for (const FrameValue& value : store.GetSeries(resultId)) series.values.push_back(value.value);
    return series;
}

}  // namespace

std::map<int, Series> SeriesOfFiles(const CResultsStore& store, const Files& files) {
    std::map<int, Series> all;
    for (const auto& [index, file] : files) {
        const auto id = ResultOf(file, store, files);
        if (!id) continue;
        Series series = SeriesOf(store, *id);
        if (!series.values.empty()) all[index] = std::move(series);
    }
    return all;
}

ValueRange RangeOfValues(const CResultsStore& store, int first, int last) {
    std::optional<ValueRange> range;
    const auto take = [&range](float value) {
        if (!std::isfinite(value)) return;
        if (!range) range = ValueRange{value, value};
        range->min = std::min(range->min, value);
        range->max = std::max(range->max, value);
    };
    for (const int id : store.GetResultIds()) {
        const std::vector<FrameValue> series = store.GetSeries(id);
        if (!range && !series.empty()) take(series.front().value);
        for (const FrameValue& value : series) {
            if (value.frame >= first && value.frame <= last) take(value.value);
        }
    }
    if (!range) return {};
    if (range->max - range->min < kLeastHeight) {
        // Beyond 2^21 the difference is less than a float's step.
        range->min = std::min(range->max - kLeastHeight, std::nextafter(range->max, -HUGE_VALF));
    }
    return *range;
}

std::wstring ValueTitle(const CResultsStore& store, const Metric::CMetricList& metrics) {
    const std::vector<int> ids = store.GetResultIds();
    ResultRecord record;
    if (ids.empty() || !store.GetResultRecord(ids.front(), record)) return {};
    const std::wstring& unit = metrics.GetUnit(record.metricIndex);
    return metrics.GetName(record.metricIndex) + L" " + Metric::ComponentName(record.component) +
           (unit.empty() ? L"" : L" [" + unit + L"]");
}

}  // namespace Report
