#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/options.h"
#include "engine/model/finish_record.h"
#include "engine/model/measurement_job.h"

/// What a run of the headless program leaves.
struct HeadlessRun {
    std::unique_ptr<FinishRecord> finish;
    std::vector<std::wstring> logLines;  ///< without the time
};

/// Runs the job on this thread, with the log and the progress bar that the options ask for. SIGINT and SIGTERM stop it at
/// the end of a frame.
HeadlessRun RunHeadless(const Options& options, MeasurementJob& job);
