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
    /// A metric of one file on a clip of two frames, or one of the program on noisy clips.
    void UseFake() {
        job.selection = {{0, 0, L"replaced"}};
        job.metricSettings = {L"of the job"};
        job.run.inputFiles = {Clip(L"a", 2, 0)};
        job.csv.save = true;
        job.csv.outputDir = directory;
    }
    void UseNoise(const wchar_t* id, std::size_t files) {
        SelectedMetric selected;
        EXPECT_TRUE(Metric::GetMetricList().FindById(id, selected.metricIndex));
        job.selection = {selected};
        job.fileSlots = {};
        for (std::size_t i = 0; i < files; ++i)
            job.fileSlots[i] = Noise(L"noise" + std::to_wstring(i), static_cast<unsigned>(i) + 1, 20);
        job.run.inputFiles.assign(job.fileSlots.begin(),
                                  job.fileSlots.begin() + static_cast<std::ptrdiff_t>(files));
        job.badFrames.save = true;
        job.badFrames.count = 4;
        job.badFrames.radius = 2;
    }
    /// What the worker does and says between the end of the frames and the end of the run.
    Lines Run(const Metric::CMetricList& metrics = Metric::GetMetricList()) {
        witness.events.clear();
        MeasurementWorker(job, witness, witness, metrics);
        const Lines& events = witness.events;
        EXPECT_EQ(L"<active>", events.front());
        EXPECT_EQ((Lines{L"<log closed>", L"<over>", L"<finished>"}), Lines(events.end() - 3, events.end()));
        const auto start = std::find(events.begin(), events.end(), L"<no stop>");
        return {start + 1, events.end() - 3};
    }
    Lines RunFake() {
        FakeKind kind;
        kind.inputs = {1, 1};
        kind.configurable = true;
        return Run(FakeList({kind}));
    }
    void Stop() {
        job.run.interruption = std::make_unique<InterruptionToken>();
        job.run.interruption->Stop();
    }

    MeasurementJob job;
    Witness witness;
};

TEST_F(MeasurementWorkerTest, SavesAndFinishes) {
    UseFake();
    job.run.yuvTable = 1;
    job.caption.position = 1;
    job.visualization.customName = L"copied";
    const std::wstring csv = directory + L"fake_yyuv_a.csv";
    const Lines saved = {L"Saving CSV to \"" + directory + L"\"", L"CSV saved to \"" + csv + L"\""};
    EXPECT_EQ(saved, RunFake());
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

    Stop();
    EXPECT_EQ(saved, RunFake()) << "a stopped run is kept";
    EXPECT_EQ((RunOutcome{1, 2}), *witness.finish->outcome);
}

TEST_F(MeasurementWorkerTest, ChoosesBadFramesAsTheRulesReadOneByOne) {
    job.badFrames.outputDir = directory;
    const std::vector<std::tuple<const wchar_t*, std::size_t, int>> rows = {{L"psnr", 2, 0},
                                                                            {L"psnr", 3, 0},
                                                                            {L"psnr", 3, 1},
                                                                            {L"psnr", 3, 2},
                                                                            {L"psnr", 3, 3},
                                                                            {L"mse", 2, 0},
                                                                            {L"mse", 3, 2},
                                                                            {L"mse", 3, 3},
                                                                            {L"blocking_metric", 1, 0},
                                                                            {L"blocking_metric", 2, 0},
                                                                            {L"blocking_metric", 3, 2},
                                                                            {L"blurring_metric", 3, 3}};
    for (const auto& [metric, files, type] : rows) {
        SCOPED_TRACE(testing::Message() << metric << " " << files << " " << type);
        UseNoise(metric, files);
        job.badFrames.frameType = type;
        EXPECT_EQ((Lines{L"Saving bad frames to \"" + directory + L"\"", L"Bad frames saved"}), Run());

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
        std::vector<int> expected = BruteForceSelection(values, differences, type, 4, 2, higherIsBetter);
        std::sort(expected.begin(), expected.end());
        ASSERT_NE(nullptr, witness.finish->badFrames);
        EXPECT_EQ(expected, *witness.finish->badFrames);
        EXPECT_EQ(4 * files, witness.finish->badFramePaths.size());
    }
    Stop();
    EXPECT_EQ(Lines(), Run()) << "not a word of bad frames of a part";
    EXPECT_EQ(nullptr, witness.finish->badFrames);
}

}  // namespace
