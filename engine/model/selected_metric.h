#pragma once

#include <set>
#include <string>
#include <tuple>

/// A metric of a run.
struct SelectedMetric {
    int metricIndex = 0;  ///< in the metric list
    int component = 0;    ///< colour component
    std::wstring settings;

    friend bool operator<(const SelectedMetric& left, const SelectedMetric& right) {
        return std::tie(left.metricIndex, left.component) < std::tie(right.metricIndex, right.component);
    }
};

/// In order of metric, then component; a pair of both stands in it once.
using MetricSelection = std::set<SelectedMetric>;
