#pragma once

#include "catalogue/metric_list.h"
#include "engine/model/measurement_job.h"

/// The files that the selected metric compares: 1 or 2 for every metric that can be measured. Some need a
/// second one only to visualize.
int InputsNeeded(const MeasurementJob& job, const Metric::CMetricList& metrics);

/// Whether the files are chosen that a run needs.
bool IsReady(const MeasurementJob& job, const Metric::CMetricList& metrics);

/// What the status line says.
const wchar_t* StatusText(bool isReady);

/// Comparative analysis rules out the bad-frames type of a single comparison, and the lack of it all others.
void MatchBadFramesType(MeasurementJob& job);
