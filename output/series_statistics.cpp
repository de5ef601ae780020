#include "output/series_statistics.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace {

/// Of sorted values, at least one.
double Percentile(const std::vector<double>& sorted, double percent) {
    const double position = percent / 100 * static_cast<double>(sorted.size() - 1);
    const auto below = static_cast<std::size_t>(position);
    const std::size_t above = std::min(below + 1, sorted.size() - 1);
    return sorted[below] + (sorted[above] - sorted[below]) * (position - static_cast<double>(below));
}

}  // namespace

SeriesStatistics StatisticsOf(const std::vector<FrameValue>& series) {
    std::vector<double> values;
    for (const FrameValue& entry : series) {
        if (std::isfinite(entry.value)) values.push_back(entry.value);
    }
    if (values.empty()) {
        constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
        return {kNone, kNone, kNone, kNone, kNone, kNone, kNone};
    }

    const auto count = static_cast<double>(values.size());
    SeriesStatistics statistics;
    statistics.mean = std::accumulate(values.begin(), values.end(), 0.0) / count;
    double squares = 0;
    for (const double value : values) squares += (value - statistics.mean) * (value - statistics.mean);
    statistics.stddev = std::sqrt(squares / count);

    std::sort(values.begin(), values.end());
    statistics.min = values.front();
    statistics.max = values.back();
    statistics.p5 = Percentile(values, 5);
    statistics.p50 = Percentile(values, 50);
    statistics.p95 = Percentile(values, 95);
    return statistics;
}
