#include "engine/run/measurement_worker.h"

#include "tests/engine/run/fake_run.h"

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

}  // namespace
