#include "output/bad_frame_selection.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <random>

#include "output/series_statistics.h"
#include "tests/output/brute_force_selection.h"
#include "tests/output/results.h"

// Chosen by hand.
TEST(SelectFrames, ByTheRolesOfTheFiles) {
    const Result psnrA = {L"psnr", {L"o", L"a"}, {30, 10, 20}}, psnrB = {L"psnr", {L"o", L"b"}, {28, 16, 20}};
    const Result mseA = {L"mse", {L"o", L"a"}, {30, 10, 20}}, mseB = {L"mse", {L"o", L"b"}, {28, 16, 20}};
    const Result blockingO = {L"blocking_metric", {L"o"}, {1, 2, 3}};
    const Result blockingA = {L"blocking_metric", {L"a"}, {2, 0, 3}};
    const Result blockingB = {L"blocking_metric", {L"b"}, {2, 5, 1}};
    const Result otherComponent = {L"psnr", {L"o", L"a"}, {1, 2, 3}, 1};
    const Result otherMetric = {L"ssim_precise", {L"o", L"a"}, {1, 2, 3}};
    const Result infiniteA = {L"psnr", {L"o", L"a"}, {INFINITY, 1}};
    const Result infiniteB = {L"psnr", {L"o", L"b"}, {INFINITY, 1}};
    const std::tuple<const char*, int, std::vector<Result>, std::vector<int>> kCases[] = {
        {"two files, higher is better", 0, {psnrA}, {1, 2, 0}},
        {"two files, lower is better", 0, {mseA}, {0, 2, 1}},
        {"two processed files", 0, {psnrA, psnrB}, {1, 0, 2}},
        {"the first is better, higher is better", 2, {psnrA, psnrB}, {0, 2, 1}},
        {"the second is better, higher is better", 3, {psnrA, psnrB}, {1, 2, 0}},
        {"the first is better, lower is better", 2, {mseA, mseB}, {1, 2, 0}},
        {"the second is better, lower is better", 3, {mseA, mseB}, {0, 2, 1}},
        {"one-file metric, a single file", 0, {blockingO}, {2, 1, 0}},
        {"one-file metric, original and processed", 0, {blockingO, blockingA}, {1, 0, 2}},
        {"one-file metric, two processed files", 1, {blockingO, blockingA, blockingB}, {1, 2, 0}},
        {"the shorter series ends it", 0, {psnrA, {L"psnr", {L"o", L"b"}, {28, 16}}}, {1, 0}},
        {"no number", 0, {{L"psnr", {L"o", L"a"}, {NAN, 30, 20}}}, {2, 1, 0}},
        {"infinite in both", 0, {infiniteA, infiniteB}, {1, 0}},
        {"other metrics and components don't count", 0, {psnrA, otherComponent, otherMetric}, {1, 2, 0}},
        {"three results on two files each", 0, {psnrA, psnrB, psnrB}, {}},
        {"not on the first processed file", 0, {psnrB}, {}},
        {"no results", 0, {}, {}},
    };
    BadFramesSettings settings;
    settings.original.name = L"o";
    settings.firstProcessed.name = L"a";
    settings.secondProcessed.name = L"b";
    for (const auto& [what, type, results, selected] : kCases) {
        settings.frameType = type;
        CResultsStore store;  // counted from -1: plug-ins may count from anywhere
        for (const Result& result : results) AddResult(store, store.GetResultCount() - 1, result);
        EXPECT_EQ(selected, SelectFrames(settings, store)) << what;
    }
}

TEST(SelectBadFrames, AsTheRulesReadOneByOne) {
    std::mt19937 random(1);
    for (int round = 0; round < 4000; ++round) {
        const auto below = [&](unsigned end) { return static_cast<int>(random() % end); };
        BadFramesSettings settings;
        settings.frameType = below(4);
        settings.count = below(6);
        settings.radius = below(7);
        const bool differences = below(2) == 0, higherIsBetter = below(2) == 0;
        std::vector<FrameValue> values;
        const int first = below(3);
        for (int i = below(30); i > 0; --i) {  // few values: many are equal
            const float value = below(8) == 0 ? NAN : static_cast<float>(below(9)) - 4;
            values.push_back({first + static_cast<int>(values.size()), value});
        }
        ASSERT_EQ(BruteForceSelection(values, differences, settings.frameType, settings.count,
                                      settings.radius, higherIsBetter),
                  SelectBadFrames(values, differences, settings, higherIsBetter))
            << "type " << settings.frameType << " count " << settings.count << " radius " << settings.radius;
    }
}

TEST(SelectBadFrames, AnyRadius) {
    const std::vector<FrameValue> values = {{0, 3}, {1, 2}, {2, 1}};
    BadFramesSettings settings;
    for (const auto& [radius, selected] : {std::pair(INT_MAX, std::vector{0}), {INT_MIN, {0, 1, 2}}}) {
        settings.radius = radius;
        EXPECT_EQ(selected, SelectBadFrames(values, false, settings, false));
    }
}

// Worked by hand: sorted 1 2 4 5 8, deviations from 4 squared 9 4 0 1 16; positions 0.2, 2 and 3.8. What isn't
// finite is left out.
TEST(SeriesStatistics, OfTheFiniteValues) {
    const auto of = [](const std::vector<float>& values) {
        std::vector<FrameValue> series;
        for (const float value : values) series.push_back({static_cast<int>(series.size()), value});
        const SeriesStatistics s = StatisticsOf(series);
        return std::vector<double>{s.min, s.max, s.mean, s.stddev, s.p5, s.p50, s.p95};
    };
    const std::vector<double> expected = {1, 8, 4, std::sqrt(6.0), 1.2, 4, 7.4};
    const std::vector<double> statistics = of({4, 8, NAN, 1, INFINITY, 5, 2, -INFINITY});
    for (std::size_t i = 0; i < 7; ++i) EXPECT_DOUBLE_EQ(expected[i], statistics[i]) << i;
    EXPECT_EQ((std::vector<double>{3, 3, 3, 0, 3, 3, 3}), of({3}));
    for (const double nothing : of({NAN})) EXPECT_TRUE(std::isnan(nothing));
    EXPECT_TRUE(std::isnan(of({})[5]));
}
