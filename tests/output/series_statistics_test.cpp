#include "output/series_statistics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

std::vector<FrameValue> Series(const std::vector<float>& values) {
    std::vector<FrameValue> series;
    for (const float value : values) series.push_back({static_cast<int>(series.size()), value});
    return series;
}

}  // namespace

// Worked by hand: sorted 1 2 4 5 8, deviations from 4 squared 9 4 0 1 16; positions 0.2, 2 and 3.8.
TEST(SeriesStatistics, OfFiveValues) {
    const SeriesStatistics s = StatisticsOf(Series({4, 8, 1, 5, 2}));
    EXPECT_EQ(1, s.min);
    EXPECT_EQ(8, s.max);
    EXPECT_EQ(4, s.mean);
    EXPECT_DOUBLE_EQ(std::sqrt(6.0), s.stddev);
    EXPECT_DOUBLE_EQ(1.2, s.p5);
    EXPECT_EQ(4, s.p50);
    EXPECT_DOUBLE_EQ(7.4, s.p95);
}

TEST(SeriesStatistics, LeavesOutWhatIsNotFinite) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    const SeriesStatistics s = StatisticsOf(Series({kNan, 3, kInfinity, -kInfinity}));
    EXPECT_EQ(3, s.min);
    EXPECT_EQ(3, s.max);
    EXPECT_EQ(0, s.stddev);
    EXPECT_EQ(3, s.p95);
    EXPECT_TRUE(std::isnan(StatisticsOf(Series({kNan})).mean));
    EXPECT_TRUE(std::isnan(StatisticsOf({}).p50));
}
