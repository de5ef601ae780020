#include "report/rules/report_series.h"

#include "report/rules/report_data.h"
#include "report/rules/report_text.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Report;

namespace {

FileRecord File(const wchar_t* name) {
    FileRecord file;
    file.name = name;
    return file;
}

struct Store : CResultsStore {
    void Add(int id, std::vector<const wchar_t*> files, int first, const std::vector<float>& values) {
        ResultRecord record;
        for (const wchar_t* file : files) record.files.push_back(File(file));
        SetResultRecord(id, record);
        for (std::size_t i = 0; i < values.size(); ++i) AddValue(id, first + static_cast<int>(i), values[i]);
    }
};

const std::map<int, FileRecord> kFiles = {{0, File(L"orig")}, {1, File(L"one")}, {2, File(L"two")}};

using Values = std::map<int, float>;

Values FirstValues(const CResultsStore& store, const std::map<int, FileRecord>& files) {
    Values values;
    for (const auto& [file, series] : SeriesOfFiles(store, files)) values[file] = series.values.front();
    return values;
}

TEST(Series, BelongToFiles) {
    Store store;
    store.Add(0, {L"orig", L"two"}, 0, {20});
    store.Add(1, {L"orig", L"one"}, 0, {10});
    store.Add(2, {L"orig", L"one"}, 0, {11});
    EXPECT_EQ((Values{{1, 10}, {2, 20}}), FirstValues(store, kFiles)) << "the first of each";

    store.Add(3, {L"orig"}, 0, {30});
    store.Add(4, {L"one"}, 0, {40});
    EXPECT_EQ((Values{{0, 30}, {1, 10}, {2, 20}}), FirstValues(store, kFiles));

    EXPECT_EQ((Values{{1, 10}}), FirstValues(store, {{1, File(L"one")}}))
        << "without an original a file keeps its number";
    EXPECT_TRUE(FirstValues(store, {{1, File(L"other")}}).empty());

    // One path opened in two ways is two files; a record that is neither of them counts by its name.
    FileRecord script = File(L"one");
    script.useAvs = true;
    Store opened;
    for (const int id : {50, 60, 70}) {
        ResultRecord record;
        record.files = {File(L"orig"), id == 50 ? script : File(L"one")};
        opened.SetResultRecord(id, record);
        opened.AddValue(id, 0, static_cast<float>(id));
    }
    for (const int filter : {0, 3}) {
        script.filter = filter;
        EXPECT_EQ((Values{{1, 60}, {2, 50}}), FirstValues(opened, {{1, File(L"one")}, {2, script}}));
    }

    Store without;
    without.Add(0, {L"orig", L"one"}, 0, {});
    EXPECT_TRUE(FirstValues(without, kFiles).empty()) << "a record without values";
}

TEST(ValueRange, Extremes) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kNone = std::numeric_limits<float>::quiet_NaN();
    // The values of two series, of which the second starts at frame 1; the frames shown.
    const std::tuple<const char*, std::vector<float>, std::vector<float>, int, int, ValueRange> kCases[] = {
        {"of all results", {30, 20}, {45, 25}, 0, 2, {20, 45}},
        {"of the frames shown, and the first series' first value", {30, 20, 90}, {45, 25}, 1, 1, {20, 45}},
        {"equal ones get 0.1", {30, 30}, {30}, 0, 1, {30 - 0.1F, 30}},
        {"below 0.1", {0.95F, 0.99F}, {0.97F}, 0, 1, {0.99F - 0.1F, 0.99F}},
        {"what is no number doesn't count", {kInfinity, 40}, {kNone, 50}, 0, 2, {40, 50}},
        {"none", {}, {}, 0, 0, {0, 0.1F}},
    };
    for (const auto& [what, one, two, first, last, expected] : kCases) {
        SCOPED_TRACE(what);
        Store store;
        store.Add(0, {L"one"}, 0, one);
        store.Add(1, {L"two"}, 1, two);
        const ValueRange range = RangeOfValues(store, first, last);
        EXPECT_EQ(expected.min, range.min);
        EXPECT_EQ(expected.max, range.max);
    }
    Store large;
    large.Add(0, {L"one"}, 0, {1e9F});
    const ValueRange range = RangeOfValues(large, 0, 0);
    EXPECT_LT(range.min, range.max) << "where 0.1 is less than the distance of two numbers";
}

TEST(ReportData, TakesWhatAllResultsShare) {
    Store store;
    store.Add(0, {L"orig", L"one"}, 0, {1, 2, 3, 4});
    store.Add(1, {L"orig", L"two"}, 1, {5, 6});
    const ReportData data = GatherData({store, nullptr, kFiles, 0});
    EXPECT_EQ(1, data.firstFrame);
    EXPECT_EQ(2, data.lastFrame);
    EXPECT_EQ(1, data.values.min) << "the first value of the first series counts, though it isn't shown";
    EXPECT_EQ(6, data.values.max);
    EXPECT_EQ(L"one", data.paths.at(1));

    store.Add(2, {L"one"}, 10, {7});
    const ReportData apart = GatherData({store, nullptr, kFiles, 0});
    EXPECT_EQ(10, apart.firstFrame);
    EXPECT_EQ(10, apart.lastFrame);
}

TEST(ReportData, Title) {
    Store store;
    EXPECT_EQ(L"", ValueTitle(store, Metric::GetMetricList()));
    ResultRecord record;
    record.component = Metric::ComponentU;
    ASSERT_TRUE(Metric::GetMetricList().FindById(L"psnr", record.metricIndex));
    store.SetResultRecord(7, record);
    EXPECT_EQ(L"PSNR UYUV [dB]", ValueTitle(store, Metric::GetMetricList()));
    ASSERT_TRUE(Metric::GetMetricList().FindById(L"vqm", record.metricIndex));
    store.SetResultRecord(3, record);
    EXPECT_EQ(L"VQM UYUV", ValueTitle(store, Metric::GetMetricList())) << "the first result, without a unit";
}

TEST(ReportText, TheLargestValue) {
    EXPECT_EQ(L"340282346638528859811704183484516925440.0000", ValueText(std::numeric_limits<float>::max()));
}

}  // namespace
