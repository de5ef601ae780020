#include "engine/model/results_store.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <optional>
#include <tuple>

namespace {

constexpr int kPsnr = 5;       // frames 0 to 99, value = frame
constexpr int kLate = 7;       // frames 0 to 67, as of a metric that is 32 frames behind
constexpr int kTail = 9;       // frames 10 to 12
constexpr int kNoSeries = 11;  // a record that nothing was measured for

CResultsStore FilledStore() {
    CResultsStore store;
    for (const int id : {kNoSeries, kTail, kLate, kPsnr}) store.SetResultRecord(id, {id, 0, {}, {}, {}});
    for (int frame = 0; frame < 100; ++frame) store.AddValue(kPsnr, frame, static_cast<float>(frame));
    for (int frame = 0; frame < 68; ++frame) store.AddValue(kLate, frame, 0.5f);
    for (int frame = 10; frame < 13; ++frame) store.AddValue(kTail, frame, -1);
    store.SetAverage(kPsnr, 49.5f);
    return store;
}

TEST(ResultsStore, Values) {
    CResultsStore store = FilledStore();
    using Row = std::tuple<int, int, std::optional<float>>;
    const std::vector<Row> rows = {{kPsnr, 0, 0.f},      {kPsnr, 99, 99.f},  {kPsnr, 100, {}},
                                   {kLate, 68, {}},      {kTail, 9, {}},     {kTail, 12, -1.f},
                                   {kTail, INT_MIN, {}}, {kNoSeries, 0, {}}, {6, 0, {}}};
    for (const auto& [id, frame, expected] : rows) {
        float value = 123;
        EXPECT_EQ(expected.has_value(), store.GetValue(id, frame, value)) << id << " " << frame;
        EXPECT_EQ(expected.value_or(0), value);
    }
    for (const auto& [frame, ids] :
         {std::pair(9, std::vector<int>{kPsnr, kLate}), {10, {kPsnr, kLate, kTail}}, {100, {}}}) {
        std::vector<int> found;
        for (const Metric::MetricValue& value : store.GetFrameValues(frame)) found.push_back(value.resultId);
        EXPECT_EQ(ids, found) << frame;
    }
    store.AddValue(6, 0, 1);  // a series without a record is no result
    EXPECT_EQ((std::vector<int>{kPsnr, kLate, kTail, kNoSeries}), store.GetResultIds());
    ResultRecord record;
    EXPECT_TRUE(store.GetResultRecord(kTail, record) && record.metricIndex == kTail);
    EXPECT_FALSE(store.GetResultRecord(6, record));
    float value = 1;
    EXPECT_TRUE(!store.GetAverage(kLate, value) && value == 0) << "its metric was never asked";
    EXPECT_TRUE(store.GetAverage(kPsnr, value) && value == 49.5f);
}

TEST(ResultsStore, Ends) {
    const auto ends = [](const CResultsStore& store) {
        std::array<int, 6> all = {-1, -1, -1, -1, -1, -1};
        EXPECT_EQ(store.GetAnyFirstFrame(all[0]), store.GetAnyLastFrame(all[1]));
        EXPECT_EQ(store.GetCommonFirstFrame(all[2]), store.GetCommonLastFrame(all[3]));
        const bool hasAny = store.GetFrameCount(all[4]);
        const bool hasCommon = store.GetCommonFrameCount(all[5]);
        EXPECT_EQ(std::pair(all[4] > 0, all[5] > 0), std::pair(hasAny, hasCommon));
        return all;
    };
    CResultsStore store;
    EXPECT_EQ((std::array{-1, -1, -1, -1, 0, 0}), ends(store));
    store.AddValue(1, 7, 0);
    EXPECT_EQ((std::array{7, 7, 7, 7, 1, 1}), ends(store)) << "a single frame";
    store.AddValue(2, 3, 0);
    EXPECT_EQ((std::array{3, 7, 7, 3, 5, 0}), ends(store)) << "no frame in common";
    store = FilledStore();
    EXPECT_EQ((std::array{0, 99, 10, 12, 100, 3}), ends(store));
    int first = -1, last = -1;
    EXPECT_TRUE(store.GetFirstFrame(kTail, first) && store.GetLastFrame(kTail, last));
    EXPECT_EQ(std::pair(10, 12), std::pair(first, last));
    EXPECT_FALSE(store.GetFirstFrame(kNoSeries, first) || store.GetLastFrame(kNoSeries, last));
}

}  // namespace
