#pragma once

#include <map>
#include <string>
#include <vector>

#include "catalogue/metric_list.h"
#include "engine/model/results_store.h"

namespace Report {

/// The values of one result, without gaps.
struct Series {
    int first = 0;  // the frame of the first value
    std::vector<float> values;

    /// False leaves `value` alone: there is none for `frame`.
    bool ValueAt(int frame, float& value) const {
        if (frame < first || frame - first >= static_cast<int>(values.size())) return false;
        value = values[static_cast<std::size_t>(frame - first)];
        return true;
    }
};

/// The curves, by the index of the file that they belong to: the first result that speaks of the file alone,
/// or compares another file with it. A file is known by its whole record, as one path may be opened in two
/// ways; a record that none of the files has counts by its name. A file without such a result, or whose
/// result has no value, has no curve.
std::map<int, Series> SeriesOfFiles(const CResultsStore& store, const std::map<int, FileRecord>& files);

/// What the plots' vertical axes show, at least 0.1 high.
struct ValueRange {
    float min = 0;
    float max = 0.1F;
};

/// The extremes over all results in the frames `first` to `last`. Values that are no numbers don't count.
ValueRange RangeOfValues(const CResultsStore& store, int first, int last);

/// The vertical axis' title, by the first result: "PSNR YYUV [dB]". Empty without one.
std::wstring ValueTitle(const CResultsStore& store, const Metric::CMetricList& metrics);

}  // namespace Report
