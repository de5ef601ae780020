#pragma once

#include "engine/model/finish_record.h"
#include "engine/model/measurement_job.h"

/// What the process answers to its caller.
enum ExitStatus : int {
    ExitComplete = 0,  ///< everything measured and saved
    ExitPartial = 1,   ///< results exist, but something was skipped, interrupted or not saved
    ExitNothing = 2,   ///< nothing measured
    ExitUsage = 64,    ///< the options are wrong
};

/// How complete a finished run is: whether every frame was measured, every given file and metric is in the
/// results, and what was to be saved was saved. Throws std::bad_alloc, but for a run without a value.
ExitStatus StatusOf(const FinishRecord& finish, const MeasurementJob& job);
