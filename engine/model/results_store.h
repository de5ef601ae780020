#pragma once

#include <map>
#include <string>
#include <vector>

#include "engine/model/file_record.h"
#include "metric/metric_types.h"

struct FrameValue {
    int frame = 0;
    float value = 0;

    friend bool operator==(const FrameValue&, const FrameValue&) = default;
};

/// What a result is the result of.
struct ResultRecord {
    int metricIndex = 0;            ///< in the metric list
    int component = 0;              ///< colour component
    std::vector<FileRecord> files;  ///< that the result speaks of, as its metric names them
    std::wstring settings;          ///< the metric's settings string in this run
    std::wstring name;              ///< of this result among the metric's; empty for a metric with one result
};

/// What a run leaves behind: for every result of every metric its record, its values by frame and its value
/// for the whole sequence, by `resultId`. The store computes nothing.
///
/// A result exists from its record on. Its series exists from its first value, its average from when it was
/// set; it may have neither. A series is without gaps: each value's frame is one above the last one's. Not
/// locked: one thread at a time. Readings of an id that isn't there are false or empty.
class CResultsStore {
public:
    void SetResultRecord(int resultId, const ResultRecord& record) {
        records.insert_or_assign(resultId, record);  // whole or, without memory, not at all
    }
    void AddValue(int resultId, int frame, float value);
    void SetAverage(int resultId, float value) { averages[resultId] = value; }

    int GetResultCount() const { return static_cast<int>(records.size()); }
    std::vector<int> GetResultIds() const;  ///< ascending
    bool GetResultRecord(int resultId, ResultRecord& record) const;
    bool GetValue(int resultId, int frame, float& value) const;  ///< false sets `value` to 0
    bool GetAverage(int resultId, float& value) const;           ///< false sets `value` to 0
    std::vector<FrameValue> GetSeries(int resultId) const;
    /// The value of every series that holds `frame`, in ascending order of ids.
    std::vector<Metric::MetricValue> GetFrameValues(int frame) const;

    // The ends of the series. False leaves `frame` as it is: there is no value at all.
    bool GetFirstFrame(int resultId, int& frame) const;
    bool GetLastFrame(int resultId, int& frame) const;
    bool GetCommonFirstFrame(int& frame) const;  ///< the common frames are those in every series
    bool GetCommonLastFrame(int& frame) const;
    bool GetAnyFirstFrame(int& frame) const;  ///< the frames in at least one series
    bool GetAnyLastFrame(int& frame) const;

    // Their numbers, last minus first plus 1. False sets `count` to 0: there is none.
    bool GetCommonFrameCount(int& count) const;
    bool GetFrameCount(int& count) const;

private:
    using Series = std::vector<FrameValue>;  // never empty in the map

    std::map<int, Series> series;
    std::map<int, float> averages;
    std::map<int, ResultRecord> records;
};
