#include "engine/run/measurement_worker.h"

#include <algorithm>
#include <map>
#include <new>
#include <utility>

#include "engine/run/run_log.h"
#include "engine/run/run_measurement.h"
#include "engine/run/taken_by_run.h"
#include "output/bad_frames_saver.h"
#include "output/csv_writer.h"
#include "platform/program_directory.h"
#include "platform/vfw/avi_file.h"

namespace {

constexpr const wchar_t* kLogFile = L"log.txt";

/// The job's selection with the settings that the job has for each metric.
MetricSelection ConfiguredSelection(const MeasurementJob& job) {
    MetricSelection configured;
    for (SelectedMetric selected : job.selection) {
        const auto index = static_cast<std::size_t>(selected.metricIndex);
        if (index < job.metricSettings.size()) selected.settings = job.metricSettings[index];
        configured.insert(std::move(selected));
    }
    return configured;
}

/// The path of the file, empty if it couldn't be written.
std::wstring SaveCsv(const MeasurementJob& job, const CResultsStore& store,
                     const Metric::CMetricList& metrics) {
    LogLine(job.run, L"Saving CSV to " + Quoted(job.csv.outputDir));
    CsvWriter writer(job.csv, metrics);
    bool isSaved = false;
    try {
        isSaved = writer.Save(store);
    } catch (const std::bad_alloc&) {  // the text of a long run
    }
    LogLine(job.run, (isSaved ? L"CSV saved to " : L"Failed to save CSV to ") + Quoted(writer.GetPath()));
    return isSaved ? writer.GetPath() : std::wstring();
}

/// The files that the job names, by their role. An empty slot says nothing of its role.
void SetRoles(MeasurementJob& job) {
    FileRecord* const roles[] = {&job.badFrames.original, &job.badFrames.firstProcessed,
                                 &job.badFrames.secondProcessed};
    for (std::size_t i = 0; i < job.fileSlots.size(); ++i)
        if (!job.fileSlots[i].name.empty()) *roles[i] = job.fileSlots[i];
}

/// The frames are null unless all their pictures could be saved.
void SaveBadFrames(MeasurementJob& job, const Metric::CMetricList& metrics, FinishRecord& finish) {
    LogLine(job.run, L"Saving bad frames to " + Quoted(job.badFrames.outputDir));
    if (!job.run.visualization.save) LogMissingFont(job.run);  // otherwise it is said already
    SetRoles(job);
    std::map<std::wstring, FileRecord> records;
    for (const FileRecord& slot : job.fileSlots)
        if (!slot.name.empty()) records.emplace(slot.name, slot);

    BadFramesSaver saver(job.badFrames, job.run.log.get(), metrics, TakenByRun(job.run));
    bool isComplete = false;
    auto frames = std::make_unique<std::vector<int>>();
    try {
        *frames = saver.Save(*finish.results, records, job.run.yuvTable);
        isComplete = saver.IsComplete();
    } catch (const std::bad_alloc&) {  // the pictures of huge frames
    }
    finish.badFramePaths = saver.GetPaths();
    if (!isComplete) {
        LogLine(job.run, L"Failed to save bad frames!");
        return;
    }
    std::sort(frames->begin(), frames->end());
    finish.badFrames = std::move(frames);
    LogLine(job.run, L"Bad frames saved");
}

void MeasureAndSave(MeasurementJob& job, IRunVoices& voices, IRunObserver& observer,
                    const Metric::CMetricList& metrics, FinishRecord& finish) {
    // 1. The run's own copies and voices.
    RunParameters& run = job.run;
    run.visualization = job.visualization;
    run.visualization.caption = job.caption;
    run.progress = voices.CreateProgress();
    run.log = voices.CreateLog(WritableProgramDirectory() + kLogFile);
    job.selection = ConfiguredSelection(job);

    // 2. The measurement.
    finish.runResult = RunMeasurement(run, *finish.results, job.selection, finish.outcome.get(), metrics);
    finish.yuvTable = run.yuvTable;
    finish.visualizationPaths = run.visualizationPaths;
    observer.WithdrawStop();

    // 3. What is kept of it, also of a part.
    const bool hasResults =
        finish.outcome->measurement != CompletionNothing && finish.results->GetResultCount() > 0;
    if (job.csv.save && hasResults) finish.csvPath = SaveCsv(job, *finish.results, metrics);

    // 4. What compares complete sequences.
    if (job.badFrames.save && hasResults && finish.outcome->measurement == CompletionAll)
        SaveBadFrames(job, metrics, finish);
}

}  // namespace

void MeasurementWorker(MeasurementJob& job, IRunVoices& voices, IRunObserver& observer,
                       const Metric::CMetricList& metrics) {
    const AviFileSession session;
    observer.SetRunActive(true);
    auto finish = std::make_unique<FinishRecord>();
    finish->results = std::make_unique<CResultsStore>();
    finish->outcome = std::make_unique<RunOutcome>();
    try {
        MeasureAndSave(job, voices, observer, metrics, *finish);
    } catch (...) {  // what was measured until then is in the record
        LogFailure(job.run);
        if (finish->outcome->measurement == CompletionAll) finish->outcome->measurement = CompletionPartial;
    }

    // Nothing is said after the end.
    job.run.progress.reset();
    job.run.log.reset();
    observer.SetRunActive(false);
    observer.RunFinished(std::move(finish));
}
