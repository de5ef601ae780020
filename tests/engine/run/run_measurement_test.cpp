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
    bool Measure(RunParameters& run, const std::vector<FakeKind>& kinds) {
        MetricSelection selection;
        for (int i = 0; i < static_cast<int>(kinds.size()); ++i) selection.insert({i, 0, L"settings"});
        return RunMeasurement(run, store, selection, &outcome, FakeList(kinds));
    }

    std::vector<float> Averages() const {
        std::vector<float> all(1);
        for (const int id : store.GetResultIds())
            if (store.GetAverage(id, all.back())) all.push_back(0);
        all.pop_back();
        return all;
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

    /// What was logged from the schedule on.
    Lines ScheduleLines() const {
        const auto start = std::find(lines.begin(), lines.end(), L"Creating measurement schedule...");
        return start == lines.end() ? Lines() : Lines(start + 1, lines.end());
    }
};

TEST_F(RunMeasurementTest, TwoFilesOneMetric) {
    RunParameters run = Recorded({Clip(L"a", 3, 40), Clip(L"b", 2, 10)});
    EXPECT_TRUE(Measure(run, {FakeKind()}));
    EXPECT_EQ((RunOutcome{2, 2}), outcome);
    EXPECT_EQ((Series{{30, 30}}), Values());
    EXPECT_EQ((std::vector<float>{2}), Averages());
    EXPECT_EQ((Lines{L"Loaded Fake", L"Saving average results", L"Done!"}), ScheduleLines());
    EXPECT_EQ((Lines{L"start", L"a", L"b", L"from 0", L"to 2", L"at 0", L"at 1", L"finish"}), calls);
    EXPECT_EQ(std::tuple(16, 16, 2), std::tuple(run.width, run.height, run.length));
}

TEST_F(RunMeasurementTest, NothingToMeasure) {
    const std::wstring skipped = L"Calculation of metrics on two files will be skipped because ";
    const struct {
        std::vector<FileRecord> files;
        RunOutcome outcome;
        std::wstring lastLine;
    } cases[] = {
        {{}, {0, 0}, L"No files for measurement!"},
        {{Raw(L"gone")}, {0, 0}, L"No files were opened, can not perform measurement."},
        {{Raw(L"gone"), Clip(L"b", 1, 0)}, {1, 1}, skipped + L"original file was not opened."},
        {{Clip(L"a", 1, 0)}, {2, 2}, skipped + L"there is no enough files opened."},
    };
    for (const auto& c : cases) {
        RunParameters run = Recorded(c.files);
        EXPECT_FALSE(Measure(run, {FakeKind()}));
        EXPECT_EQ(c.lastLine, lines.back());
        EXPECT_EQ(c.outcome, outcome);
        EXPECT_EQ(0, store.GetResultCount());
        EXPECT_TRUE(calls.empty());
    }
}

TEST_F(RunMeasurementTest, ScheduleOfThreeFiles) {
    FakeKind oneOrTwo, pair;
    oneOrTwo.inputs = {1, 2};
    pair.results = {{0, 1}, {1}};
    const FileRecord mask = Clip(L"mask", 1, 0);  // no pixel without a 0
    RunParameters run = Recorded({Clip(L"a", 1, 90), Clip(L"b", 1, 50), Clip(L"c", 1, 20)}, mask);
    EXPECT_TRUE(Measure(run, {oneOrTwo, pair}));
    EXPECT_EQ((Series{{90}, {50}, {20}, {40}, {41}, {70}, {71}}), Values());
    EXPECT_EQ((Lines{L"a", L"b", L"c", L"ab", L"b", L"ac", L"c"}), Files());

    store = {};
    run.visualization.save = true;
    run.visualization.outputDir = FromUtf8(directory);
    EXPECT_TRUE(Measure(run, {oneOrTwo}));
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
        Lines files;  // of the result; empty: it isn't measured
        Lines lines;
    } cases[] = {
        {missing, 1, {}, {L"Failed to load Fake"}},
        {configured, 2, {L"ab"}, {L"Loaded Fake", L"Configured metric with string settings"}},
        {refusing, 1, {}, {L"Loaded Fake", L"Failed to configure Fake", L"Settings string: settings"}},
        {silent, 1, {}, {L"Loaded Fake", L"Metric Fake returned invalid information; measurement skipped"}},
        {confused,
         1,
         {L"ab"},
         {L"Loaded Fake", L"Metric returned invalid information; measurements aborted"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(ToUtf8(c.lines.back()));
        RunParameters run = Recorded({Clip(L"a", 1, 0), Clip(L"b", 1, 0)});
        EXPECT_EQ(!c.files.empty(), Measure(run, {c.kind}));
        EXPECT_EQ((RunOutcome{c.measurement, 2}), outcome);
        EXPECT_EQ(c.files, Files());
        Lines expected = c.lines;
        if (!c.files.empty()) expected.insert(expected.end(), {L"Saving average results", L"Done!"});
        EXPECT_EQ(expected, ScheduleLines());
    }
}

TEST_F(RunMeasurementTest, StopOnTheFirstFrame) {
    RunParameters run = Recorded({Clip(L"a", 3, 7), Clip(L"b", 3, 0)});
    EXPECT_TRUE(Measure(run, {Acting(FakeKind(), 0, [&] { run.interruption->Stop(); })}));
    EXPECT_EQ((RunOutcome{1, 2}), outcome);
    EXPECT_EQ((Series{{7}}), Values());
    EXPECT_EQ((std::vector<float>{1}), Averages());
    EXPECT_EQ((Lines{L"Loaded Fake", L"Measurement interrupted", L"Saving average results", L"Done!"}),
              ScheduleLines());
    EXPECT_EQ((Lines{L"start", L"a", L"b", L"from 0", L"to 3", L"at 0", L"finish", L"finish"}), calls);
}

TEST_F(RunMeasurementTest, AFileThatShrinksIsLeftOutFromThereOn) {
    // In the first frame `b` loses its last two frames and a half; the others go on.
    RunParameters run = Recorded({Clip(L"a", 4, 40), Clip(L"b", 4, 10)});
    const auto shrink = [&] { std::filesystem::resize_file(PathOf(L"b"), 3 * kSide * kSide / 2); };
    EXPECT_TRUE(Measure(run, {OneFile(), Acting(FakeKind(), 0, shrink)}));
    EXPECT_EQ((RunOutcome{1, 2}), outcome);
    EXPECT_EQ((Series{{40, 41, 42, 43}, {10}, {30}}), Values());
    EXPECT_EQ((Lines{L"Loaded Fake", L"Loaded Fake", L"Loaded Fake",
                     L"Failed to read frame from sequence \"b\", measurement skipped",
                     L"Saving average results", L"Done!"}),
              ScheduleLines());
}

// Chroma stays in the file unless somebody may look at it. The file loses that of its last frame meanwhile.
TEST_F(RunMeasurementTest, ChromaIsReadForThoseWhoLookAtIt) {
    for (const bool needsChroma : {false, true}) {
        SCOPED_TRACE(needsChroma);
        FileRecord clip = Clip(L"a", 3, 40);  // read as two frames of luma 40 and 41, chroma 41 and 42
        clip.yuvType = IYUV;
        const auto shrink = [&] {
            std::filesystem::resize_file(PathOf(L"a"), 3 * kSide * kSide - kSide * kSide / 2);
        };
        FakeKind kind = OneFile();
        kind.readsItsComponentOnly = !needsChroma;
        if (needsChroma)
            kind.measure = [](const Images& images) {
                return *images[0]->GetY() + 1000 * *images[0]->GetU();
            };
        RunParameters run = Recorded({clip});
        store = {};
        EXPECT_TRUE(Measure(run, {Acting(kind, 0, shrink)}));
        const Series expected = {needsChroma ? std::vector<float>{40 - 87000} : std::vector<float>{40, 41}};
        EXPECT_EQ(expected, Values());
    }
}

TEST_F(RunMeasurementTest, InvalidValuesDontMoveTheOthers) {
    FakeKind faulty;  // no answer at frame 1; at frame 2 one for a result that isn't its own, twice
    faulty.answer = [frame = 0](std::vector<Metric::MetricValue>& values) mutable {
        if (frame == 1) values.clear();
        if (frame++ == 2) values.insert(values.end(), 2, {values[0].resultId + 1, 99});
    };
    RunParameters run = Recorded({Clip(L"a", 4, 7), Clip(L"b", 4, 0)});
    EXPECT_TRUE(Measure(run, {faulty, FakeKind()}));
    EXPECT_EQ(CompletionPartial, outcome.measurement);
    EXPECT_EQ((std::vector<float>{7, 7, 7, 7}), Values()[1]);
    const std::vector<float> values = Values()[0];
    ASSERT_EQ(4u, values.size());
    EXPECT_TRUE(std::isnan(values[1]));
    EXPECT_EQ((std::vector<float>{7, 7, 7}), (std::vector<float>{values[0], values[2], values[3]}));
    const auto told =
        std::count(lines.begin(), lines.end(),
                   L"Metric Fake returned invalid values at frame 1; missing values are not numbers");
    EXPECT_EQ(1, told);
}

TEST_F(RunMeasurementTest, TheMetricThatIs32FramesBehind) {
    FakeKind late, plain;
    late.id = L"stssim";
    late.measure = [frame = 0](const Images&) mutable { return static_cast<float>(frame++); };
    plain.id = L"stssim2";
    for (const auto& [length, values] : {std::pair(32, std::vector<float>()), {35, {32, 33, 34}}}) {
        RunParameters run = Recorded({Clip(L"a", length, 9), Clip(L"b", length, 0)});
        EXPECT_TRUE(Measure(run, {late, plain}));
        EXPECT_EQ((Series{values, std::vector<float>(static_cast<std::size_t>(length), 9)}), Values());
    }
}

TEST_F(RunMeasurementTest, NoFramesAndNobodyWhoListens) {
    RunParameters run;
    run.inputFiles = {Clip(L"a", 0, 0)};
    store = {};
    EXPECT_TRUE(RunMeasurement(run, store, {{0, 0, {}}}, nullptr, FakeList({OneFile()})));
    EXPECT_EQ((Series{{}}), Values());
    EXPECT_EQ((std::vector<float>{0}), Averages()) << "asked all the same";
}

TEST_F(RunMeasurementTest, MaskPaintsEveryFileAlike) {
    // The mask's frame 0 is flat 5 but for a black first pixel, frame 1 all black, frame 2 flat 7; frame 3
    // can't be read.
    const FileRecord mask = Clip(L"mask", 4, 5);
    std::fstream file(PathOf(L"mask"), std::ios::in | std::ios::out | std::ios::binary);
    file.put(0).seekp(kSide * kSide) << std::string(kSide * kSide, '\0');
    file.close();

    FakeKind firstAndLast;  // pixels, the last one a thousandfold
    firstAndLast.inputs = {1, 1};
    firstAndLast.measure = [](const Images& images) {
        return images[0]->GetY()[0] + 1000 * images[0]->GetY()[kSide * kSide - 1];
    };
    const auto shrink = [&] { std::filesystem::resize_file(PathOf(L"mask"), 3 * kSide * kSide); };
    RunParameters run = Recorded({Clip(L"a", 4, 40), Clip(L"b", 4, 10)}, mask);
    EXPECT_TRUE(Measure(run, {Acting(firstAndLast, 0, shrink)}));
    EXPECT_EQ((Series{{5040, 41041, 7007, 43043}, {5010, 11011, 7007, 13013}}), Values());
    EXPECT_EQ((RunOutcome{1, 2}), outcome);
    EXPECT_EQ(L"Failed to read frame from sequence \"mask\", measurement skipped", lines.end()[-3]);
}

TEST_F(RunMeasurementTest, OutOfMemory) {
    const auto badAlloc = [] { throw std::bad_alloc(); };
    const auto tooLong = [] { throw std::length_error("picture"); };
    const struct {
        FakeKind kind;
        int measurement;
        Series values;
    } cases[] = {
        {Acting(FakeKind(), 0, badAlloc), 0, {{}}},
        {Acting(FakeKind(), 2, tooLong), 1, {{7, 7}}},
    };
    for (const auto& c : cases) {
        RunParameters run = Recorded({Clip(L"a", 4, 7), Clip(L"b", 4, 0)});
        EXPECT_TRUE(Measure(run, {c.kind}));
        EXPECT_EQ((RunOutcome{c.measurement, 2}), outcome);
        EXPECT_EQ(c.values, Values());
        EXPECT_EQ((Lines{L"Loaded Fake", kOutOfMemory, L"Saving average results", L"Done!"}),
                  ScheduleLines());
    }

    Metric::CMetricList greedy;
    greedy.Append(0, [](const Metric::MetricParameters& parameters) {
        if (parameters.width == kSide) throw std::bad_alloc();
        return std::make_unique<FakeMetric>(OneFile(), parameters);
    });
    RunParameters run = Recorded({Clip(L"a", 4, 7)});
    EXPECT_FALSE(RunMeasurement(run, store, {{0, 0, {}}}, &outcome, greedy));
    EXPECT_EQ((RunOutcome{0, 0}), outcome);
    EXPECT_EQ(kOutOfMemory, lines.back());
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
        RunParameters run = Recorded({Clip(L"a", 3, 1), Clip(L"b", 3, 100)});
        EXPECT_TRUE(Measure(run, kinds));
        Series expected(9, {256, 512, 768});
        expected.insert(expected.end(), 9, {25600, 25856, 26112});
        EXPECT_EQ(expected, Values());

        // An exception of one metric must come out of the team.
        kinds[4] = Acting(kind, 1, [] { throw std::bad_alloc(); });
        EXPECT_TRUE(Measure(run, kinds));
        EXPECT_EQ(1, outcome.measurement);
        EXPECT_EQ(kOutOfMemory, lines.end()[-3]);
    }
    omp_set_num_threads(threads);
}

}  // namespace
