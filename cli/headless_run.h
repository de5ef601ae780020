#pragma once

#include <memory>

#include "cli/console_log.h"
#include "cli/options.h"
#include "engine/model/finish_record.h"
#include "engine/model/measurement_job.h"

/// What a run of the headless program leaves.
struct HeadlessRun {
    std::unique_ptr<FinishRecord> finish;
    ConsoleLog::Record log;
};

/// Runs the job on this thread, with the log and the progress bar that the options ask for.
HeadlessRun RunHeadless(const Options& options, MeasurementJob& job);
