#pragma once

#include "catalogue/metric_list.h"
#include "engine/model/measurement_job.h"
#include "engine/model/results_store.h"
#include "engine/model/run_outcome.h"
#include "engine/run/run_state.h"

/// The schedule says which metric instance runs on which files. It is made once, before the first frame, and
/// enters the record of every result in the store. A metric that can't be had, refuses its settings or
/// promises no result is logged and left out; the measurement is then a partial one. Sets without metrics
/// aren't made.

/// With visualization every metric gets a file for its pictures. A file that can't be opened is logged; the
/// visualization is then a partial one, and the metric runs without.

/// One set for each opened file, the original included and the mask not: an instance of each metric that
/// takes one file.
void CreateOneFileSchedule(RunState& state, const MetricSelection& selection, const RunParameters& run,
                           CResultsStore& store, RunOutcome& outcome,
                           const Metric::CMetricList& metrics = Metric::GetMetricList());

/// One set for each pair of the original and another file: an instance of each metric that takes two files.
/// None without the original.
void CreateTwoFileSchedule(RunState& state, const MetricSelection& selection, const RunParameters& run,
                           CResultsStore& store, RunOutcome& outcome,
                           const Metric::CMetricList& metrics = Metric::GetMetricList());
