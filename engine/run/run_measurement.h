#pragma once

#include "catalogue/metric_list.h"
#include "engine/model/measurement_job.h"
#include "engine/model/results_store.h"
#include "engine/model/run_outcome.h"

/// One measurement, from opening the files to the stored results: fills `store` with a record, a series and
/// an average for every result of every metric of the selection on every file or pair of files. What happens
/// is told to `run.log` and `run.progress`, where they exist. `run` gets the pictures' size and the length.
///
/// True if frames could be measured and the averages are stored, also after an interruption. `outcome`, which
/// may be null, says how much came about; a run that can't have the memory it needs ends with what it has.
/// Everything that the run opens is closed when it returns. The store is a new one. Throws nothing; any
/// thread, one run at a time.
bool RunMeasurement(RunParameters& run, CResultsStore& store, const MetricSelection& selection,
                    RunOutcome* outcome, const Metric::CMetricList& metrics = Metric::GetMetricList());
