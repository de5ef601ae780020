#pragma once

#include <vector>

#include "engine/model/results_store.h"

/// How the values of a series are spread. Values that aren't finite are left out; of none at all everything
/// is NaN.
///
/// Mean and standard deviation (of the whole, divided by the count) are summed in double. A percentile p is
/// the value at position p / 100 * (count - 1) of the sorted values, interpolated linearly between
/// neighbours.
struct SeriesStatistics {
    double min = 0;
    double max = 0;
    double mean = 0;
    double stddev = 0;
    double p5 = 0;
    double p50 = 0;
    double p95 = 0;
};

SeriesStatistics StatisticsOf(const std::vector<FrameValue>& series);
