#include "engine/run/run_measurement.h"

#include <omp.h>

#include <new>
#include <stdexcept>

#include "tests/engine/run/fake_run.h"

namespace {

constexpr const wchar_t* kOutOfMemory = L"Not enough memory for the measurement.";

FakeKind OneFile() {
    FakeKind kind;
    kind.inputs = kind.inputsVisual = 1;
    return kind;
}

/// Does `act` before the value of frame `when`.
FakeKind Acting(FakeKind kind, int when, std::function<void()> act) {
    kind.measure = [kind, when, act, frame = 0](const Images& images, int component) mutable {
        if (frame++ == when) act();
        return kind.measure(images, component);
    };
    return kind;
}

struct RunMeasurementTest : RunTest {
    bool Measure(RunParameters& run, const std::vector<FakeKind>& kinds) {
        MetricSelection selection;
        for (int i = 0; i < static_cast<int>(kinds.size()); ++i) selection.insert({i, 0, L"settings"});
        return RunMeasurement(run, store, selection, &outcome, FakeList(kinds));
    }

    /// The values of each result in ascending order of ids, which is the order of the schedule.
    std::vector<std::vector<float>> Values() const {
        std::vector<std::vector<float>> all;
        for (const int id : store.GetResultIds()) {
            all.emplace_back();
            for (const FrameValue& entry : store.GetSeries(id)) {
                EXPECT_EQ(static_cast<int>(all.back().size()), entry.frame);
                all.back().push_back(entry.value);
            }
        }
        return all;
    }

    std::vector<float> Averages() const {
        std::vector<float> all;
        for (const int id : store.GetResultIds())
            if (float average = 0; store.GetAverage(id, average)) all.push_back(average);
        return all;
    }

    /// The names of the files that each result speaks of.
    std::vector<Lines> Files() const {
        std::vector<Lines> all;
        for (const int id : store.GetResultIds()) {
            ResultRecord record;
            store.GetResultRecord(id, record);
            all.emplace_back();
            for (const FileRecord& file : record.files) all.back().push_back(file.name);
        }
        return all;
    }

    /// What was logged from the schedule on.
    Lines ScheduleLines() const {
        const auto start = std::find(lines.begin(), lines.end(), L"Creating measurement schedule...");
        return start == lines.end() ? Lines() : Lines(start + 1, lines.end());
    }

    CResultsStore store;
    RunOutcome outcome;
};

using Series = std::vector<std::vector<float>>;

TEST_F(RunMeasurementTest, TwoFilesOneMetric) {
    RunParameters run = Recorded({Clip(L"a.yuv", 3, 40), Clip(L"b.yuv", 2, 10)});
    EXPECT_TRUE(Measure(run, {FakeKind()}));
    EXPECT_EQ((RunOutcome{2, 2}), outcome);
    EXPECT_EQ((Series{{30, 30}}), Values());
    EXPECT_EQ((std::vector<float>{2}), Averages());
    EXPECT_EQ((std::vector<Lines>{{L"a.yuv", L"b.yuv"}}), Files());
    EXPECT_EQ((Lines{L"Loaded Fake", L"Saving average results", L"Done!"}), ScheduleLines());
    EXPECT_EQ((Lines{L"start a.yuv b.yuv", L"minimum 0", L"maximum 2", L"finish"}), progressCalls);
    EXPECT_EQ((std::vector<int>{0, 1}), positions);
    EXPECT_EQ(std::tuple(16, 16, 2), std::tuple(run.width, run.height, run.length));
}

TEST_F(RunMeasurementTest, NothingToMeasure) {
    const struct {
        const char* what;
        std::vector<FileRecord> files;
        int inputs;
        RunOutcome outcome;
        std::wstring lastLine;
    } cases[] = {
        {"no files", {}, 2, {0, 0}, L"No files for measurement!"},
        {"none opens",
         {RawRecord(L"gone.yuv", 16, 16)},
         2,
         {0, 0},
         L"No files were opened, can not perform measurement."},
        {"the original doesn't open",
         {RawRecord(L"gone.yuv", 16, 16), Clip(L"b.yuv", 1, 0)},
         2,
         {1, 1},
         L"Calculation of metrics on two files will be skipped because original file was not opened."},
        {"nothing to compare with",
         {Clip(L"a.yuv", 1, 0)},
         2,
         {2, 2},
         L"Calculation of metrics on two files will be skipped because there is no enough files opened."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        RunParameters run = Recorded(c.files);
        EXPECT_FALSE(Measure(run, {FakeKind()}));
        EXPECT_EQ(c.outcome, outcome);
        EXPECT_EQ(c.lastLine, lines.back());
        EXPECT_EQ(0, store.GetResultCount());
        EXPECT_TRUE(progressCalls.empty());
    }
}

TEST_F(RunMeasurementTest, ScheduleOfThreeFiles) {
    RunParameters run = Recorded({Clip(L"a.yuv", 1, 90), Clip(L"b.yuv", 1, 50), Clip(L"c.yuv", 1, 20)});
    run.useMask = true;
    run.maskFile = Clip(L"mask.yuv", 1, 0);  // all black: no pixel without a 0
    FakeKind both = OneFile();
    both.inputsVisual = 2;
    FakeKind pair;
    pair.results = {{0, 1}, {1}};
    EXPECT_TRUE(Measure(run, {both, pair}));
    EXPECT_EQ((Series{{90}, {50}, {20}, {40}, {41}, {70}, {71}}), Values());
    EXPECT_EQ((std::vector<Lines>{{L"a.yuv"},
                                  {L"b.yuv"},
                                  {L"c.yuv"},
                                  {L"a.yuv", L"b.yuv"},
                                  {L"b.yuv"},
                                  {L"a.yuv", L"c.yuv"},
                                  {L"c.yuv"}}),
              Files());

    store = {};
    run.visualization.save = true;
    EXPECT_TRUE(Measure(run, {both}));
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
    const struct {
        FakeKind kind;
        int measurement;
        int files;  // of the result; 0: it isn't measured
        Lines lines;
    } cases[] = {
        {missing, 1, 0, {L"Failed to load Fake"}},
        {configured, 2, 2, {L"Loaded Fake", L"Configured metric with string settings"}},
        {refusing, 1, 0, {L"Loaded Fake", L"Failed to configure Fake", L"Settings string: settings"}},
        {silent, 1, 0, {L"Loaded Fake", L"Metric Fake returned invalid information; measurement skipped"}},
        {confused, 1, 2, {L"Loaded Fake", L"Metric returned invalid information; measurements aborted"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(ToUtf8(c.lines.back()));
        lines.clear();
        store = {};
        RunParameters run = Recorded({Clip(L"a.yuv", 1, 0), Clip(L"b.yuv", 1, 0)});
        EXPECT_EQ(c.files > 0, Measure(run, {c.kind}));
        EXPECT_EQ((RunOutcome{c.measurement, 2}), outcome);
        Lines expected = c.lines;
        if (c.files > 0) expected.insert(expected.end(), {L"Saving average results", L"Done!"});
        EXPECT_EQ(expected, ScheduleLines());
        EXPECT_EQ(c.files, Files().empty() ? 0 : static_cast<int>(Files()[0].size()));
    }
}

TEST_F(RunMeasurementTest, StopOnTheFirstFrame) {
    RunParameters run = Recorded({Clip(L"a.yuv", 3, 7), Clip(L"b.yuv", 3, 0)});
    EXPECT_TRUE(Measure(run, {Acting(FakeKind(), 0, [&] { run.interruption->Stop(); })}));
    EXPECT_EQ((RunOutcome{1, 2}), outcome);
    EXPECT_EQ((Series{{7}}), Values());
    EXPECT_EQ((std::vector<float>{1}), Averages());
    EXPECT_EQ((Lines{L"Loaded Fake", L"Measurement interrupted", L"Saving average results", L"Done!"}),
              ScheduleLines());
    EXPECT_EQ((Lines{L"start a.yuv b.yuv", L"minimum 0", L"maximum 3", L"finish", L"finish"}), progressCalls);
}

TEST_F(RunMeasurementTest, AFileThatShrinksIsLeftOutFromThereOn) {
    // Past the first frame `b` loses its last two frames and a half; the others go on.
    RunParameters run = Recorded({Clip(L"a.yuv", 4, 40), Clip(L"b.yuv", 4, 10)});
    const auto shrink = [&] { std::filesystem::resize_file(PathOf(L"b.yuv"), 3 * kSide * kSide / 2); };
    FakeKind pair = Acting(FakeKind(), 0, shrink);
    EXPECT_TRUE(Measure(run, {OneFile(), pair}));
    EXPECT_EQ((RunOutcome{1, 2}), outcome);
    EXPECT_EQ((Series{{40, 41, 42, 43}, {10}, {30}}), Values());
    EXPECT_EQ(1, std::count(lines.begin(), lines.end(),
                            L"Failed to read frame from sequence \"b.yuv\", measurement skipped"));
}

TEST_F(RunMeasurementTest, TheMetricThatIs32FramesBehind) {
    FakeKind late, plain;
    late.id = L"stssim";
    late.measure = [frame = 0](const Images&, int) mutable { return static_cast<float>(frame++); };
    plain.id = L"stssim2";
    for (const int length : {32, 35}) {
        SCOPED_TRACE(length);
        store = {};
        RunParameters run = Recorded({Clip(L"a.yuv", length, 9), Clip(L"b.yuv", length, 0)});
        EXPECT_TRUE(Measure(run, {late, plain}));
        const std::vector<float> lateValues =
            length == 32 ? std::vector<float>() : std::vector<float>{32, 33, 34};
        EXPECT_EQ((Series{lateValues, std::vector<float>(static_cast<std::size_t>(length), 9)}), Values());
    }
}

TEST_F(RunMeasurementTest, NoFramesAtAll) {
    RunParameters run = Recorded({Clip(L"a.yuv", 0, 0)});
    EXPECT_TRUE(Measure(run, {OneFile()}));
    EXPECT_EQ((RunOutcome{2, 2}), outcome);
    EXPECT_EQ((Series{{}}), Values());
    EXPECT_EQ((std::vector<float>{0}), Averages()) << "asked all the same";
}

TEST_F(RunMeasurementTest, MaskPaintsEveryFileAlike) {
    // The mask of frame 0 is flat 5 but for the first pixel, that of frame 1 all black, that of frame 2 flat
    // 7.
    FileRecord mask = Clip(L"mask.yuv", 3, 5);
    std::fstream file(PathOf(L"mask.yuv"), std::ios::in | std::ios::out | std::ios::binary);
    file.put(0);
    file.seekp(kSide * kSide);
    file << std::string(kSide * kSide, '\0');
    file.close();

    // First and last pixel of both files, as one number each.
    FakeKind pair;
    pair.measure = [](const Images& images, int) {
        const auto corners = [](Metric::CMetricImage& image) {
            return image.GetY()[0] * 1000 + image.GetY()[kSide * kSide - 1];
        };
        return corners(*images[0]) * 10 - corners(*images[1]) * 10;
    };
    RunParameters run = Recorded({Clip(L"a.yuv", 3, 40), Clip(L"b.yuv", 3, 10)});
    run.useMask = true;
    run.maskFile = mask;
    EXPECT_TRUE(Measure(run, {pair}));
    EXPECT_EQ((RunOutcome{2, 2}), outcome);
    EXPECT_EQ((Series{{300000, 300300, 0}}), Values());
}

TEST_F(RunMeasurementTest, AMaskThatCantBeReadAnyMore) {
    RunParameters run = Recorded({Clip(L"a.yuv", 2, 40)});
    run.useMask = true;
    run.maskFile = Clip(L"mask.yuv", 2, 5);
    const auto shrink = [&] { std::filesystem::resize_file(PathOf(L"mask.yuv"), kSide * kSide); };
    EXPECT_TRUE(Measure(run, {Acting(OneFile(), 0, shrink)}));
    EXPECT_EQ((RunOutcome{1, 2}), outcome);
    EXPECT_EQ((Series{{5, 41}}), Values()) << "masked, then not";
    EXPECT_NE(lines.end(),
              std::find(lines.begin(), lines.end(),
                        L"Failed to read frame from sequence \"mask.yuv\", measurement skipped"));
}

TEST_F(RunMeasurementTest, NobodyListens) {
    RunParameters run;
    run.inputFiles = {Clip(L"a.yuv", 1, 3)};
    EXPECT_TRUE(RunMeasurement(run, store, {{0, 0, {}}}, nullptr, FakeList({OneFile()})));
    EXPECT_EQ((Series{{3}}), Values());
    run.inputFiles.clear();
    EXPECT_FALSE(RunMeasurement(run, store, {}, nullptr, {}));
}

TEST_F(RunMeasurementTest, OutOfMemory) {
    const auto badAlloc = [] { throw std::bad_alloc(); };
    const auto tooLong = [] { throw std::length_error("picture"); };
    const struct {
        const char* what;
        FakeKind kind;
        int measurement;
        Series values;
    } cases[] = {
        {"in the first frame", Acting(FakeKind(), 0, badAlloc), 0, {{}}},
        {"later", Acting(FakeKind(), 2, tooLong), 1, {{7, 7}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        store = {};
        lines.clear();
        RunParameters run = Recorded({Clip(L"a.yuv", 4, 7), Clip(L"b.yuv", 4, 0)});
        EXPECT_TRUE(Measure(run, {c.kind}));
        EXPECT_EQ((RunOutcome{c.measurement, 2}), outcome);
        EXPECT_EQ(c.values, Values());
        EXPECT_EQ((Lines{L"Loaded Fake", kOutOfMemory, L"Saving average results", L"Done!"}),
                  ScheduleLines());
    }

    Metric::CMetricList greedy;
    greedy.Append(0, [](const Metric::MetricParameters& parameters) -> std::unique_ptr<Metric::IMetric> {
        if (parameters.width == kSide) throw std::bad_alloc();
        return std::make_unique<FakeMetric>(OneFile(), parameters);
    });
    RunParameters run = Recorded({Clip(L"a.yuv", 4, 7)});
    EXPECT_FALSE(RunMeasurement(run, store, {{0, 0, {}}}, &outcome, greedy));
    EXPECT_EQ((RunOutcome{0, 0}), outcome);
    EXPECT_EQ(kOutOfMemory, lines.back());
}

/// The sum of the first plane's rows by a loop of its own, as the kernels have them; throws in frame 2 of a
/// run with `fail`.
float ParallelSum(const Images& images, int component) {
    const float* plane = images[0]->GetPlane(component);
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
    std::vector<FakeKind> kinds(9, OneFile());
    for (FakeKind& kind : kinds) kind.measure = ParallelSum;
    for (const int count : {1, 2, 4, 16}) {  // down to too few metrics for a team
        SCOPED_TRACE(count);
        omp_set_num_threads(count);
        store = {};
        RunParameters run = Recorded({Clip(L"a.yuv", 3, 1), Clip(L"b.yuv", 3, 100)});
        EXPECT_TRUE(Measure(run, kinds));
        Series expected(9, {256, 512, 768});
        expected.insert(expected.end(), 9, {25600, 25856, 26112});
        EXPECT_EQ(expected, Values());

        // An exception of one metric must come out of the team.
        store = {};
        kinds[4] = Acting(kinds[4], 1, [] { throw std::bad_alloc(); });
        EXPECT_TRUE(Measure(run, kinds));
        EXPECT_EQ(1, outcome.measurement);
        EXPECT_EQ(kOutOfMemory, lines.end()[-3]);
        kinds[4] = kinds[3];
    }
    omp_set_num_threads(threads);
}

}  // namespace
