#include "engine/model/results_store.h"

#include <algorithm>
#include <cstdint>

namespace {

using SeriesById = std::map<int, std::vector<FrameValue>>;
using Choice = const int& (*)(const int&, const int&);

int FirstFrame(const std::vector<FrameValue>& series) {
    return series.front().frame;
}
int LastFrame(const std::vector<FrameValue>& series) {
    return series.back().frame;
}

/// One end of each series, and of those the least or the greatest.
bool ChooseFrame(const SeriesById& all, int (*end)(const std::vector<FrameValue>&), Choice choose,
                 int& frame) {
    if (all.empty()) return false;
    frame = end(all.begin()->second);
    for (const auto& [resultId, series] : all) frame = choose(frame, end(series));
    return true;
}

bool CountFrames(bool isKnown, int first, int last, int& count) {
    const bool hasFrames = isKnown && last >= first;
    count = hasFrames ? last - first + 1 : 0;
    return hasFrames;
}

bool FindValue(const std::vector<FrameValue>& series, int frame, float& value) {
    const std::int64_t index = std::int64_t{frame} - FirstFrame(series);
    if (index < 0 || index >= static_cast<std::int64_t>(series.size())) return false;
    value = series[static_cast<std::size_t>(index)].value;
    return true;
}

}  // namespace

void CResultsStore::AddValue(int resultId, int frame, float value) {
    const FrameValue entry = {frame, value};
    const auto [found, isNew] =
        series.try_emplace(resultId, 1, entry);  // with its value: no series is ever empty
    if (!isNew) found->second.push_back(entry);
}

std::vector<int> CResultsStore::GetResultIds() const {
    std::vector<int> ids;
    for (const auto& [resultId, record] : records) ids.push_back(resultId);
    return ids;
}

bool CResultsStore::GetResultRecord(int resultId, ResultRecord& record) const {
    const auto found = records.find(resultId);
    if (found == records.end()) return false;
    record = found->second;
    return true;
}

bool CResultsStore::GetValue(int resultId, int frame, float& value) const {
    value = 0;
    const auto found = series.find(resultId);
    return found != series.end() && FindValue(found->second, frame, value);
}

bool CResultsStore::GetAverage(int resultId, float& value) const {
    const auto found = averages.find(resultId);
    value = found == averages.end() ? 0 : found->second;
    return found != averages.end();
}

std::vector<FrameValue> CResultsStore::GetSeries(int resultId) const {
    const auto found = series.find(resultId);
    return found == series.end() ? Series() : found->second;
}

std::vector<Metric::MetricValue> CResultsStore::GetFrameValues(int frame) const {
    std::vector<Metric::MetricValue> values;
    for (const auto& [resultId, entries] : series) {
        float value = 0;
        if (FindValue(entries, frame, value)) values.push_back({resultId, value});
    }
    return values;
}

bool CResultsStore::GetFirstFrame(int resultId, int& frame) const {
    const auto found = series.find(resultId);
    if (found == series.end()) return false;
    frame = FirstFrame(found->second);
    return true;
}

bool CResultsStore::GetLastFrame(int resultId, int& frame) const {
    const auto found = series.find(resultId);
    if (found == series.end()) return false;
    frame = LastFrame(found->second);
    return true;
}

bool CResultsStore::GetCommonFirstFrame(int& frame) const {
    return ChooseFrame(series, FirstFrame, std::max<int>, frame);
}

bool CResultsStore::GetCommonLastFrame(int& frame) const {
    return ChooseFrame(series, LastFrame, std::min<int>, frame);
}

bool CResultsStore::GetAnyFirstFrame(int& frame) const {
    return ChooseFrame(series, FirstFrame, std::min<int>, frame);
}

bool CResultsStore::GetAnyLastFrame(int& frame) const {
    return ChooseFrame(series, LastFrame, std::max<int>, frame);
}

bool CResultsStore::GetCommonFrameCount(int& count) const {
    int first = 0;
    int last = 0;
    const bool isKnown = GetCommonFirstFrame(first) && GetCommonLastFrame(last);
    return CountFrames(isKnown, first, last, count);
}

bool CResultsStore::GetFrameCount(int& count) const {
    int first = 0;
    int last = 0;
    const bool isKnown = GetAnyFirstFrame(first) && GetAnyLastFrame(last);
    return CountFrames(isKnown, first, last, count);
}
