#include "engine/run/run_measurement.h"

#include <omp.h>

#include <cmath>
#include <new>
#include <stdexcept>

#include "tests/engine/run/fake_run.h"

namespace {

FakeKind OneFile() {
    FakeKind kind;
    kind.inputs = {1, 1};
    return kind;
}

/// Does `act` before the value of frame `when`.
FakeKind Acting(FakeKind kind, int when, std::function<void()> act) {
    kind.measure = [measure = kind.measure, when, act, frame = 0](const Images& images) mutable {
        if (frame++ == when) act();
        return measure(images);
    };
    return kind;
}

struct RunMeasurementTest : RunTest {
    bool Measure(std::vector<FileRecord> files, const std::vector<FakeKind>& kinds, bool visualizes = false) {
        run = Recorded(std::move(files));
        run.visualization.save = visualizes;
        run.visualization.outputDir = directory;
        MetricSelection selection;
        for (int i = 0; i < static_cast<int>(kinds.size()); ++i) selection.insert({i, 0, L"settings"});
        return RunMeasurement(run, store, selection, &outcome, FakeList(kinds));
    }

    std::vector<FileRecord> Pair(int frames, int first, int second) const {
        return {Clip(L"a", frames, first), Clip(L"b", frames, second)};
    }

    /// The names of the files that each result speaks of, put together.
    Lines Files() const {
        Lines all;
        for (const int id : store.GetResultIds()) {
            ResultRecord record;
            store.GetResultRecord(id, record);
            all.emplace_back();
            for (const FileRecord& file : record.files) all.back() += file.name;
        }
        return all;
    }

    /// What was logged from the schedule on; of a run that measured, but for the two lines of its end.
    Lines ScheduleLines() const {
        const auto start = std::find(lines.begin(), lines.end(), L"Creating measurement schedule...");
        Lines some(std::min(start + 1, lines.end()), lines.end());
        if (store.GetResultCount() == 0) return some;
        EXPECT_EQ((Lines{L"Saving average results", L"Done!"}), Lines(some.end() - 2, some.end()));
        return {some.begin(), some.end() - 2};
    }
};

TEST_F(RunMeasurementTest, TwoFilesOneMetric) {
    EXPECT_TRUE(Measure({Clip(L"a", 3, 40), Clip(L"b", 2, 10)}, {FakeKind()}));
    EXPECT_EQ((RunOutcome{2, 2}), outcome);
    EXPECT_EQ((Series{{30, 30}}), Values());
    float average = -1;
    EXPECT_TRUE(store.GetAverage(store.GetResultIds().at(0), average) && average == 2);
    EXPECT_EQ((Lines{L"Loaded Fake"}), ScheduleLines());
    EXPECT_EQ((Lines{L"start", L"a", L"b", L"from 0", L"to 2", L"at 0", L"at 1", L"finish"}), calls);
    EXPECT_EQ(std::tuple(16, 16, 2), std::tuple(run.width, run.height, run.length));
}

TEST_F(RunMeasurementTest, NothingToMeasure) {
    const std::wstring skipped = L"Calculation of metrics on two files will be skipped because ";
    const std::vector<std::tuple<std::vector<FileRecord>, RunOutcome, std::wstring>> rows = {
        {{}, {0, 0}, L"No files for measurement!"},
        {{Raw(L"gone")}, {0, 0}, L"No files were opened, can not perform measurement."},
        {{Raw(L"gone"), Clip(L"b", 1, 0)}, {1, 1}, skipped + L"original file was not opened."},
        {{Clip(L"a", 1, 0)}, {2, 2}, skipped + L"there is no enough files opened."},
    };
    for (const auto& [files, expected, lastLine] : rows) {
        EXPECT_FALSE(Measure(files, {FakeKind()}));
        EXPECT_EQ(lastLine, lines.back());
        EXPECT_EQ(expected, outcome);
        EXPECT_EQ(0, store.GetResultCount());
        EXPECT_TRUE(calls.empty());
    }
}

TEST_F(RunMeasurementTest, ScheduleOfThreeFiles) {
    FakeKind oneOrTwo, pair;
    oneOrTwo.inputs = {1, 2};
    pair.results = {{0, 1}, {1}};
    const std::vector<FileRecord> files = {Clip(L"a", 1, 90), Clip(L"b", 1, 50), Clip(L"c", 1, 20)};
    EXPECT_TRUE(Measure(files, {oneOrTwo, pair}));
    EXPECT_EQ((Series{{90}, {50}, {20}, {40}, {41}, {70}, {71}}), Values());
    EXPECT_EQ((Lines{L"a", L"b", L"c", L"ab", L"b", L"ac", L"c"}), Files());

    EXPECT_TRUE(Measure(files, {oneOrTwo}, true));
    EXPECT_EQ((Series{{40}, {70}}), Values()) << "with visualization it takes two files";
    EXPECT_EQ(std::pair(16, 16), std::pair(run.visualization.width, run.visualization.height));
}

TEST_F(RunMeasurementTest, MetricsThatCantBeScheduled) {
    FakeKind missing, configured, refusing, silent, confused;
    missing.loads = false;
    configured.configurable = refusing.configurable = true;
    refusing.acceptsSettings = false;
    silent.results = {};
    confused.results = {{0, 2, 1}};
    const std::vector<std::tuple<FakeKind, int, Lines, Lines>> rows = {
        {missing, 1, {}, {L"Failed to load Fake"}},
        {configured, 2, {L"ab"}, {L"Loaded Fake", L"Configured metric with string settings"}},
        {refusing, 1, {}, {L"Loaded Fake", L"Failed to configure Fake", L"Settings string: settings"}},
        {silent, 1, {}, {L"Loaded Fake", L"Metric Fake returned invalid information; measurement skipped"}},
        {confused,
         1,
         {L"ab"},
         {L"Loaded Fake", L"Metric returned invalid information; measurements aborted"}},
    };
    for (const auto& [kind, measurement, files, told] : rows) {
        SCOPED_TRACE(ToUtf8(told.back()));
        EXPECT_EQ(!files.empty(), Measure(Pair(1, 0, 0), {kind}));
        EXPECT_EQ((RunOutcome{measurement, 2}), outcome);
        EXPECT_EQ(files, Files());
        EXPECT_EQ(told, ScheduleLines());
    }
}

TEST_F(RunMeasurementTest, AFileThatShrinksIsLeftOutFromThereOn) {
    // In the first frame `b` loses its last two frames and a half; the others go on.
    const auto shrink = [&] { std::filesystem::resize_file(PathOf(L"b"), 3 * kPixels / 2); };
    EXPECT_TRUE(Measure(Pair(4, 40, 10), {OneFile(), Acting(FakeKind(), 0, shrink)}));
    EXPECT_EQ((RunOutcome{1, 2}), outcome);
    EXPECT_EQ((Series{{40, 41, 42, 43}, {10}, {30}}), Values());
    EXPECT_EQ((Lines{L"Loaded Fake", L"Loaded Fake", L"Loaded Fake",
                     L"Failed to read frame from sequence \"b\", measurement skipped"}),
              ScheduleLines());
}

TEST_F(RunMeasurementTest, InvalidValuesDontMoveTheOthers) {
    FakeKind faulty;  // no answer at frame 1; at frame 2 one for a result that isn't its own, twice
    faulty.answer = [frame = 0](std::vector<Metric::MetricValue>& values) mutable {
        if (frame == 1) values.clear();
        if (frame++ == 2) values.insert(values.end(), 2, {values[0].resultId + 1, 99});
    };
    EXPECT_TRUE(Measure(Pair(4, 7, 0), {faulty, FakeKind()}));
    EXPECT_EQ(CompletionPartial, outcome.measurement);
    Series values = Values();
    EXPECT_TRUE(std::isnan(std::exchange(values.at(0).at(1), 7.f)));
    EXPECT_EQ((Series{{7, 7, 7, 7}, {7, 7, 7, 7}}), values);
    const wchar_t* told = L"Metric Fake returned invalid values at frame 1; missing values are not numbers";
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(), told));
}

/// The sum of the luma's rows by a loop of its own, as the kernels have them.
float ParallelSum(const Images& images) {
    const float* plane = images[0]->GetY();
    std::vector<float> rows(16);
#pragma omp parallel for schedule(static)
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) rows[static_cast<std::size_t>(y)] += plane[16 * y + x];
    float sum = 0;
    for (const float row : rows) sum += row;
    return sum;
}

TEST_F(RunMeasurementTest, ThreadsChangeNothing) {
    const int threads = omp_get_max_threads();
    FakeKind kind = OneFile();
    kind.measure = ParallelSum;
    for (const int count : {1, 2, 4, 16}) {  // up to more than there are metrics for a team
        SCOPED_TRACE(count);
        omp_set_num_threads(count);
        std::vector<FakeKind> kinds(9, kind);
        EXPECT_TRUE(Measure(Pair(3, 1, 100), kinds));
        Series expected(9, {256, 512, 768});
        expected.insert(expected.end(), 9, {25600, 25856, 26112});
        EXPECT_EQ(expected, Values());

        // An exception of one metric must come out of the team.
        for (const int frame : {0, 1}) {
            kinds[4] = Acting(kind, frame, [frame] {
                if (frame == 0) throw std::bad_alloc();
                throw std::length_error("picture");
            });
            EXPECT_TRUE(Measure(Pair(3, 1, 100), kinds));
            EXPECT_EQ((RunOutcome{frame, 2}), outcome);
            EXPECT_EQ(L"Not enough memory for the measurement.", ScheduleLines().back());
            EXPECT_EQ(frame, static_cast<int>(Values().at(4).size()));
        }
    }
    omp_set_num_threads(threads);
}

}  // namespace
