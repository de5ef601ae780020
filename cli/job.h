#pragma once

#include "cli/options.h"
#include "engine/model/measurement_job.h"

/// Fills the job record by the options: files, metrics, outputs. Throws UsageError for what the files' names
/// or the metric list rule out. No file is opened.
void FillJob(const Options& options, MeasurementJob& job);
