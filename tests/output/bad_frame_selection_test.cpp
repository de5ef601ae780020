#include "output/bad_frame_selection.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>

#include "tests/output/brute_force_selection.h"

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

struct Result {
    const wchar_t* metric;
    std::vector<std::wstring> files;
    std::vector<float> values;
    int component = 0;
};

CResultsStore StoreOf(const std::vector<Result>& results) {
    CResultsStore store;
    for (const Result& result : results) {
        const int id = store.GetResultCount() - 1;  // plug-ins may count from anywhere
        ResultRecord record;
        EXPECT_TRUE(Metric::GetMetricList().FindById(result.metric, record.metricIndex));
        record.component = result.component;
        for (const std::wstring& file : result.files) record.files.emplace_back().name = file;
        store.SetResultRecord(id, record);
        for (std::size_t i = 0; i < result.values.size(); ++i)
            store.AddValue(id, static_cast<int>(i), result.values[i]);
    }
    return store;
}

}  // namespace

// Chosen by hand.
TEST(SelectFrames, ByTheRolesOfTheFiles) {
    const Result psnrA = {L"psnr", {L"o", L"a"}, {30, 10, 20}};
    const Result psnrB = {L"psnr", {L"o", L"b"}, {28, 16, 20}};
    const Result mseA = {L"mse", {L"o", L"a"}, {30, 10, 20}};
    const Result mseB = {L"mse", {L"o", L"b"}, {28, 16, 20}};
    const Result blockingO = {L"blocking_metric", {L"o"}, {1, 2, 3}};
    const Result blockingA = {L"blocking_metric", {L"a"}, {2, 0, 3}};
    const Result blockingB = {L"blocking_metric", {L"b"}, {2, 5, 1}};
    const struct {
        const char* what;
        int type;
        std::vector<Result> results;
        std::vector<int> selected;
    } kCases[] = {
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
        {"no number", 0, {{L"psnr", {L"o", L"a"}, {kNan, 30, 20}}}, {2, 1, 0}},
        {"infinite in both",
         0,
         {{L"psnr", {L"o", L"a"}, {INFINITY, 1}}, {L"psnr", {L"o", L"b"}, {INFINITY, 1}}},
         {1, 0}},
        {"other metrics and components don't count",
         0,
         {psnrA, {L"psnr", {L"o", L"a"}, {1, 2, 3}, 1}, {L"ssim_precise", {L"o", L"a"}, {1, 2, 3}}},
         {1, 2, 0}},
        {"three results on two files each", 0, {psnrA, psnrB, psnrB}, {}},
        {"not on the first processed file", 0, {psnrB}, {}},
        {"no results", 0, {}, {}},
    };
    BadFramesSettings settings;
    settings.original.name = L"o";
    settings.firstProcessed.name = L"a";
    settings.secondProcessed.name = L"b";
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.what);
        settings.frameType = c.type;
        EXPECT_EQ(c.selected, SelectFrames(settings, StoreOf(c.results)));
    }
}

TEST(SelectBadFrames, AsTheRulesReadOneByOne) {
    std::mt19937 random(1);
    for (int round = 0; round < 4000; ++round) {
        BadFramesSettings settings;
        settings.frameType = static_cast<int>(random() % 4);
        settings.count = static_cast<int>(random() % 6);
        settings.radius = static_cast<int>(random() % 7);
        const bool differences = random() % 2 == 0;
        const bool higherIsBetter = random() % 2 == 0;
        std::vector<FrameValue> values;
        const int first = static_cast<int>(random() % 3);
        for (int i = static_cast<int>(random() % 30); i > 0; --i) {  // few values: many are equal
            const float value = random() % 8 == 0 ? kNan : static_cast<float>(random() % 9) - 4;
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
    settings.radius = std::numeric_limits<int>::max();
    EXPECT_EQ((std::vector<int>{0}), SelectBadFrames(values, false, settings, false));
    settings.radius = std::numeric_limits<int>::min();
    EXPECT_EQ((std::vector<int>{0, 1, 2}), SelectBadFrames(values, false, settings, false));
}
