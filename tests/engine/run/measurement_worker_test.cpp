#include "engine/run/measurement_worker.h"

#include "tests/engine/run/fake_run.h"

namespace {

/// Writes down what the worker does, the log's lines included, in one list.
class Witness : public IRunVoices, public IRunObserver {
public:
    std::unique_ptr<IProgress> CreateProgress() override { return nullptr; }
    std::unique_ptr<ILog> CreateLog(const std::wstring& path) override {
        EXPECT_EQ(L"log.txt", FileNamePart(path));
        return std::make_unique<EndingLog>(events);
    }
    void SetRunActive(bool active) override { events.push_back(active ? L"<active>" : L"<over>"); }
    void WithdrawStop() override { events.push_back(L"<no stop>"); }
    void RunFinished(std::unique_ptr<FinishRecord> record) override {
        events.push_back(L"<finished>");
        finish = std::move(record);
    }

    Lines events;
    std::unique_ptr<FinishRecord> finish;

private:
    struct EndingLog : RecordingLog {
        explicit EndingLog(Lines& logLines) : RecordingLog(logLines), events(logLines) {}
        ~EndingLog() override { events.push_back(L"<log closed>"); }
        Lines& events;
    };
};

struct MeasurementWorkerTest : RunTest {
    void SetUp() override {
        RunTest::SetUp();
        FakeKind kind;
        kind.inputs = 1;
        kind.configurable = true;
        metrics = FakeList({kind});
        job.selection = {{0, 0, L"replaced"}};
        job.metricSettings = {L"of the job"};
        job.run.inputFiles = {Clip(L"a.yuv", 2, 0)};
        job.run.yuvTable = 1;
        job.csv.save = true;
        job.csv.outputDir = FromUtf8(directory);
    }

    /// From the end of the frames on.
    Lines Run() {
        MeasurementWorker(job, witness, witness, metrics);
        const auto end = std::find(witness.events.begin(), witness.events.end(), L"<no stop>");
        return {end, witness.events.end()};
    }

    Metric::CMetricList metrics;
    MeasurementJob job;
    Witness witness;
};

TEST_F(MeasurementWorkerTest, SavesAndFinishes) {
    job.caption.position = 1;
    job.visualization.customName = L"copied";
    const std::wstring csv = FromUtf8(directory) + L"fake_yyuv_a.csv";
    EXPECT_EQ((Lines{L"<no stop>", L"Saving CSV to \"" + FromUtf8(directory) + L"\"",
                     L"CSV saved to \"" + csv + L"\"", L"<log closed>", L"<over>", L"<finished>"}),
              Run());
    EXPECT_EQ(L"<active>", witness.events.front());
    EXPECT_NE(witness.events.end(), std::find(witness.events.begin(), witness.events.end(),
                                              L"Configured metric with string of the job"));
    EXPECT_TRUE(std::filesystem::exists(ToUtf8(csv)));
    EXPECT_EQ(1, job.run.visualization.caption.position);
    EXPECT_EQ(L"copied", job.run.visualization.customName);

    const FinishRecord& finish = *witness.finish;
    EXPECT_TRUE(finish.runResult);
    EXPECT_EQ((RunOutcome{2, 2}), *finish.outcome);
    EXPECT_EQ(1, finish.results->GetResultCount());
    EXPECT_EQ(1, finish.yuvTable);
    EXPECT_EQ(nullptr, finish.badFrames);
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
    std::ofstream(directory + "file");
    job.csv.outputDir = FromUtf8(directory) + L"file";
    const Lines events = Run();
    ASSERT_EQ(6u, events.size());
    EXPECT_EQ(0u, events[2].find(L"Failed to save CSV to \"" + job.csv.outputDir)) << ToUtf8(events[2]);
    EXPECT_EQ(2, witness.finish->outcome->measurement) << "the results stay";
    EXPECT_TRUE(witness.finish->csvPath.empty());
}

TEST_F(MeasurementWorkerTest, NothingToSave) {
    const Lines quietEnd = {L"<no stop>", L"<log closed>", L"<over>", L"<finished>"};
    job.run.inputFiles.clear();
    EXPECT_EQ(quietEnd, Run());
    EXPECT_FALSE(witness.finish->runResult);
    EXPECT_EQ((RunOutcome{0, 0}), *witness.finish->outcome);
}

}  // namespace
