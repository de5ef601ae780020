#include "engine/run/measurement_worker.h"

#include "tests/engine/run/fake_run.h"
#include "tests/output/brute_force_selection.h"

namespace {

/// Writes down what the worker does and logs, in one list.
struct Witness : IRunVoices, IRunObserver {
    struct ClosingLog : RecordingLog {
        using RecordingLog::RecordingLog;
        ~ClosingLog() override { lines.push_back(L"<log closed>"); }
    };

    std::unique_ptr<IProgress> CreateProgress() override { return nullptr; }
    std::unique_ptr<ILog> CreateLog(const std::wstring& path) override {
        EXPECT_EQ(L"log.txt", FileNamePart(path));
        return std::make_unique<ClosingLog>(events);
    }
    void SetRunActive(bool active) override { events.push_back(active ? L"<active>" : L"<over>"); }
    void WithdrawStop() override { events.push_back(L"<no stop>"); }
    void RunFinished(std::unique_ptr<FinishRecord> record) override {
        events.push_back(L"<finished>");
        finish = std::move(record);
    }

    Lines events;
    std::unique_ptr<FinishRecord> finish;
};

struct MeasurementWorkerTest : RunTest {
    void SetUp() override {
        RunTest::SetUp();
        job.selection = {{0, 0, L"replaced"}};
        job.metricSettings = {L"of the job"};
        job.run.inputFiles = {Clip(L"a", 2, 0)};
        job.run.yuvTable = 1;
        job.csv.save = true;
        job.csv.outputDir = FromUtf8(directory);
    }

    /// From the end of the frames on.
    Lines Run() {
        FakeKind kind;
        kind.inputs = {1, 1};
        kind.configurable = true;
        MeasurementWorker(job, witness, witness, FakeList({kind}));
        EXPECT_EQ(L"<active>", witness.events.front());
        return {std::find(witness.events.begin(), witness.events.end(), L"<no stop>"), witness.events.end()};
    }

    MeasurementJob job;
    Witness witness;
};

TEST_F(MeasurementWorkerTest, SavesAndFinishes) {
    job.caption.position = 1;
    job.visualization.customName = L"copied";
    const std::wstring path = FromUtf8(directory);
    const std::wstring csv = path + L"fake_yyuv_a.csv";
    EXPECT_EQ((Lines{L"<no stop>", L"Saving CSV to \"" + path + L"\"", L"CSV saved to \"" + csv + L"\"",
                     L"<log closed>", L"<over>", L"<finished>"}),
              Run());
    EXPECT_EQ(1, std::count(witness.events.begin(), witness.events.end(),
                            L"Configured metric with string of the job"));
    EXPECT_TRUE(std::filesystem::exists(ToUtf8(csv)));
    EXPECT_EQ(1, job.run.visualization.caption.position);
    EXPECT_EQ(L"copied", job.run.visualization.customName);

    const FinishRecord& finish = *witness.finish;
    EXPECT_TRUE(finish.runResult);
    EXPECT_EQ((RunOutcome{2, 2}), *finish.outcome);
    EXPECT_EQ(1, finish.results->GetResultCount());
    EXPECT_EQ(1, finish.yuvTable);
    EXPECT_EQ(csv, finish.csvPath);
}

TEST_F(MeasurementWorkerTest, KeepsAStoppedRun) {
    job.run.interruption = std::make_unique<InterruptionToken>();
    job.run.interruption->Stop();
    EXPECT_EQ(6u, Run().size());
    EXPECT_EQ((RunOutcome{1, 2}), *witness.finish->outcome);
    EXPECT_FALSE(witness.finish->csvPath.empty());
}

TEST_F(MeasurementWorkerTest, CsvThatCantBeWritten) {
    job.csv.outputDir = FromUtf8(PathOf(L"a"));  // a file
    EXPECT_EQ(L"Failed to save CSV to \"" + job.csv.outputDir + L"/fake_yyuv_a.csv\"", Run().at(2));
    EXPECT_EQ(2, witness.finish->outcome->measurement) << "the results stay";
    EXPECT_TRUE(witness.finish->csvPath.empty());
}

TEST_F(MeasurementWorkerTest, NothingToSave) {
    job.run.inputFiles.clear();
    EXPECT_EQ((Lines{L"<no stop>", L"<log closed>", L"<over>", L"<finished>"}), Run());
    EXPECT_FALSE(witness.finish->runResult);
    EXPECT_EQ((RunOutcome{0, 0}), *witness.finish->outcome);
}

struct BadFramesStep : MeasurementWorkerTest {
    void SetUp() override {
        MeasurementWorkerTest::SetUp();
        job.csv.save = false;
        job.badFrames.save = true;
        job.badFrames.count = 4;
        job.badFrames.radius = 2;
        job.badFrames.outputDir = FromUtf8(directory);
    }

    /// Runs a metric of the program on the first `files` of three noisy clips. The lines behind the end of
    /// the frames.
    Lines RunOnNoise(const wchar_t* id, std::size_t files) {
        SelectedMetric selected;
        EXPECT_TRUE(Metric::GetMetricList().FindById(id, selected.metricIndex));
        job.selection = {selected};
        job.metricSettings.clear();
        job.fileSlots = {};
        job.run.inputFiles.clear();
        for (std::size_t i = 0; i < files; ++i) {
            const std::wstring name = std::wstring(L"noise") + std::to_wstring(i);
            job.fileSlots[i] = Noise(name, static_cast<unsigned>(i) + 1, 20);
            job.run.inputFiles.push_back(job.fileSlots[i]);
        }
        witness.events.clear();
        MeasurementWorker(job, witness, witness);
        return {std::find(witness.events.begin(), witness.events.end(), L"<no stop>"), witness.events.end()};
    }
};

TEST_F(BadFramesStep, ChoosesAsTheRulesReadOneByOne) {
    const struct {
        const wchar_t* metric;
        std::size_t files;
        int type;
    } kCases[] = {{L"psnr", 2, 0},
                  {L"mse", 2, 0},
                  {L"psnr", 3, 1},
                  {L"psnr", 3, 2},
                  {L"psnr", 3, 3},
                  {L"mse", 3, 2},
                  {L"blocking_metric", 1, 0},
                  {L"blocking_metric", 2, 0},
                  {L"mse", 3, 3},
                  {L"psnr", 3, 0},
                  {L"blocking_metric", 3, 2},
                  {L"blurring_metric", 3, 3}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.metric << " " << c.files << " " << c.type);
        job.badFrames.frameType = c.type;
        const Lines events = RunOnNoise(c.metric, c.files);
        const std::wstring saving = L"Saving bad frames to \"" + job.badFrames.outputDir + L"\"";
        EXPECT_EQ(
            (Lines{L"<no stop>", saving, L"Bad frames saved", L"<log closed>", L"<over>", L"<finished>"}),
            events);

        // The last two series are those that are compared: original and processed, or first and second
        // processed.
        const CResultsStore& results = *witness.finish->results;
        const std::vector<int> ids = results.GetResultIds();
        std::vector<FrameValue> values = results.GetSeries(ids.back());
        const bool differences = ids.size() > 1;
        for (std::size_t i = 0; differences && i < values.size(); ++i)
            values[i].value -= results.GetSeries(ids[ids.size() - 2])[i].value;
        const bool higherIsBetter =
            Metric::GetMetricList().IsHigherBetter(job.selection.begin()->metricIndex);
        std::vector<int> expected = BruteForceSelection(values, differences, c.type, 4, 2, higherIsBetter);
        std::sort(expected.begin(), expected.end());
        ASSERT_NE(nullptr, witness.finish->badFrames);
        EXPECT_EQ(expected, *witness.finish->badFrames);
        EXPECT_EQ(4 * c.files, witness.finish->badFramePaths.size());
    }
}

TEST_F(BadFramesStep, OfAnIncompleteStepOrRunThereAreNone) {
    job.badFrames.outputDir = FromUtf8(directory) + L"noise0/";
    Lines events = RunOnNoise(L"psnr", 2);
    EXPECT_EQ(1, std::count(events.begin(), events.end(), L"Failed to save bad frames!"));
    EXPECT_EQ(nullptr, witness.finish->badFrames);
    EXPECT_EQ((RunOutcome{2, 2}), *witness.finish->outcome);

    job.run.interruption = std::make_unique<InterruptionToken>();
    job.run.interruption->Stop();
    EXPECT_EQ(4u, RunOnNoise(L"psnr", 2).size()) << "not a word of them";
    EXPECT_EQ(nullptr, witness.finish->badFrames);
}

}  // namespace
