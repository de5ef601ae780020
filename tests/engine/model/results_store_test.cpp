#include "engine/model/results_store.h"

#include <gtest/gtest.h>

#include <climits>

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

TEST(ResultsStore, GetValue) {
    const CResultsStore store = FilledStore();
    constexpr struct {
        const char* what;
        int id, frame;
        bool found;
        float value;
    } kCases[] = {
        {"first frame", kPsnr, 0, true, 0},
        {"last frame", kPsnr, 99, true, 99},
        {"past the end", kPsnr, 100, false, 0},
        {"past the end of a shorter series", kLate, 68, false, 0},
        {"before the first frame", kTail, 9, false, 0},
        {"a series that starts late", kTail, 12, true, -1},
        {"a record without a series", kNoSeries, 0, false, 0},
        {"an unknown id", 6, 0, false, 0},
        {"the smallest number", kTail, INT_MIN, false, 0},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        float value = 123;
        EXPECT_EQ(c.found, store.GetValue(c.id, c.frame, value));
        EXPECT_EQ(c.value, value);
    }
}

TEST(ResultsStore, Averages) {
    const CResultsStore store = FilledStore();
    float value = 0;
    EXPECT_TRUE(store.GetAverage(kPsnr, value));
    EXPECT_EQ(49.5f, value);
    EXPECT_FALSE(store.GetAverage(kLate, value)) << "its metric was never asked";
    EXPECT_EQ(0, value);
}

TEST(ResultsStore, RecordsCountNotSeries) {
    CResultsStore store = FilledStore();
    store.AddValue(6, 0, 1);  // without a record
    EXPECT_EQ(4, store.GetResultCount());
    EXPECT_EQ((std::vector<int>{kPsnr, kLate, kTail, kNoSeries}), store.GetResultIds());

    ResultRecord record;
    EXPECT_TRUE(store.GetResultRecord(kTail, record));
    EXPECT_EQ(kTail, record.metricIndex);
    EXPECT_FALSE(store.GetResultRecord(6, record));
}

TEST(ResultsStore, FrameValuesStandInOrderOfIds) {
    const CResultsStore store = FilledStore();
    const auto idsAt = [&](int frame) {
        std::vector<int> ids;
        for (const Metric::MetricValue& value : store.GetFrameValues(frame)) ids.push_back(value.resultId);
        return ids;
    };
    EXPECT_EQ((std::vector<int>{kPsnr, kLate}), idsAt(9));
    EXPECT_EQ((std::vector<int>{kPsnr, kLate, kTail}), idsAt(10));
    EXPECT_EQ((std::vector<int>{kPsnr}), idsAt(99));
    EXPECT_TRUE(idsAt(100).empty());
}

TEST(ResultsStore, Ends) {
    const CResultsStore store = FilledStore();
    const CResultsStore empty;
    int frame = -7;
    EXPECT_FALSE(store.GetFirstFrame(kNoSeries, frame));
    EXPECT_FALSE(empty.GetAnyLastFrame(frame));
    EXPECT_FALSE(empty.GetFrameCount(frame));
    EXPECT_EQ(0, frame);

    const auto ends = [&](auto first, auto last, auto... id) {
        int from = -1, to = -1;
        EXPECT_TRUE((store.*first)(id..., from));
        EXPECT_TRUE((store.*last)(id..., to));
        return std::pair(from, to);
    };
    EXPECT_EQ(std::pair(10, 12), ends(&CResultsStore::GetFirstFrame, &CResultsStore::GetLastFrame, kTail));
    EXPECT_EQ(std::pair(10, 12),
              ends(&CResultsStore::GetCommonFirstFrame, &CResultsStore::GetCommonLastFrame));
    EXPECT_EQ(std::pair(0, 99), ends(&CResultsStore::GetAnyFirstFrame, &CResultsStore::GetAnyLastFrame));
}

TEST(ResultsStore, FrameCounts) {
    constexpr struct {
        const char* what;
        int first, firstLength, second, secondLength;
        int common, any;
    } kCases[] = {
        {"a metric that is behind", 0, 100, 0, 68, 68, 100},
        {"a single frame", 0, 1, 0, 1, 1, 1},
        {"no frame in common", 0, 3, 5, 2, 0, 7},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        CResultsStore store;
        for (int i = 0; i < c.firstLength; ++i) store.AddValue(1, c.first + i, 0);
        for (int i = 0; i < c.secondLength; ++i) store.AddValue(2, c.second + i, 0);
        int common = -1, any = -1;
        EXPECT_EQ(c.common > 0, store.GetCommonFrameCount(common));
        EXPECT_EQ(c.common, common);
        EXPECT_TRUE(store.GetFrameCount(any));
        EXPECT_EQ(c.any, any);
    }
}

}  // namespace
