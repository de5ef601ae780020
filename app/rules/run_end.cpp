#include "app/rules/run_end.h"

#include "app/rules/file_rows.h"

void LeaveRun(ShellState& state, const RunOutcome& outcome) {
    const bool shown = state.showResults && outcome.measurement == CompletionAll;
    state.phase = shown ? RunPhase::Viewing : RunPhase::Editing;
}

std::map<int, FileRecord> ViewerFiles(const MeasurementJob& job) {
    std::map<int, FileRecord> files;
    for (const FileRow row : {RowOriginal, RowProcessed}) {
        const FileRecord& slot = SlotOf(job, row);
        if (!slot.name.empty()) files[row] = slot;
    }
    if (job.comparativeAnalysis) files[RowSecond] = SlotOf(job, RowSecond);
    return files;
}
