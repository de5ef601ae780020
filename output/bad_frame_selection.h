#pragma once

#include <vector>

#include "catalogue/metric_list.h"
#include "engine/model/output_settings.h"
#include "engine/model/results_store.h"

/// Which frames of a run are bad, the worst first. Frames of equal value come in their order, values that
/// aren't numbers behind all others.

/// The results that frames are chosen by, in ascending order: those of the run's first metric and component.
std::vector<int> DecisiveResults(const CResultsStore& store);

/// The bad frames by the files' roles in `settings`. By one series, if the decisive results leave only one;
/// otherwise by the difference of two: processed less original, or second processed less first. None if the
/// results are no such pair.
std::vector<int> SelectFrames(const BadFramesSettings& settings, const CResultsStore& store,
                              const Metric::CMetricList& metrics = Metric::GetMetricList());

/// The bad frames of one series, or of `differences` of a second series less a first. After a frame is chosen
/// the frames from `radius` before it up to the one before `radius` behind it are passed over.
std::vector<int> SelectBadFrames(std::vector<FrameValue> values, bool differences,
                                 const BadFramesSettings& settings, bool higherIsBetter);
