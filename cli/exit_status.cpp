#include "cli/exit_status.h"

#include <algorithm>

namespace {

bool HasValues(const CResultsStore& store) {
    int frames = 0;
    return store.GetFrameCount(frames);
}

/// Every selected metric and every input file stands in a record.
bool HasEverythingAsked(const CResultsStore& store, const MeasurementJob& job) {
    MetricSelection metrics;
    std::vector<FileRecord> files;
    for (const int id : store.GetResultIds()) {
        ResultRecord record;
        store.GetResultRecord(id, record);
        metrics.insert({record.metricIndex, record.component, {}});
        files.insert(files.end(), record.files.begin(), record.files.end());
    }
    const auto isInResults = [&files](const FileRecord& file) {
        return std::find(files.begin(), files.end(), file) != files.end();
    };
    return metrics.size() == job.selection.size() &&
           std::all_of(job.run.inputFiles.begin(), job.run.inputFiles.end(), isInResults);
}

}  // namespace

ExitStatus StatusOf(const FinishRecord& finish, const MeasurementJob& job) {
    if (!HasValues(*finish.results)) return ExitNothing;
    const bool complete =
        finish.outcome->measurement == CompletionAll && HasEverythingAsked(*finish.results, job) &&
        (!job.run.useMask || job.run.maskOpened) && (!job.csv.save || !finish.csvPath.empty()) &&
        (!job.visualization.save || finish.outcome->visualization == CompletionAll) &&
        (!job.badFrames.save || finish.badFrames != nullptr);
    return complete ? ExitComplete : ExitPartial;
}
