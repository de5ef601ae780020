#pragma once

#include "catalogue/metric_list.h"
#include "engine/model/measurement_job.h"
#include "engine/run/run_observer.h"

/// A whole run by the job record, from the first file to the saved results: measures, writes the CSV file if
/// there is anything to write, saves the bad frames of a complete run, and reports the end. Runs on the
/// calling thread, which both programs start for it; one at a time.
///
/// The job's other groups are read, `job.run` gets its working copies, its log and its progress, which are
/// gone at the end, and `job.badFrames` the files' roles.
void MeasurementWorker(MeasurementJob& job, IRunVoices& voices, IRunObserver& observer,
                       const Metric::CMetricList& metrics = Metric::GetMetricList());
