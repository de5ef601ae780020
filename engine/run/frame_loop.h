#pragma once

#include "engine/model/measurement_job.h"
#include "engine/model/results_store.h"
#include "engine/model/run_outcome.h"
#include "engine/run/run_state.h"

/// Reads frame after frame of every file, converts each file once for a component, hands the planes to the
/// scheduled metrics and stores their values, until the shortest file ends or the run is interrupted, always
/// at a frame's end.
///
/// A file that can't be read is out from that frame on; a picture that can't be converted leaves the last
/// good one in its place. Both are logged and make the measurement a partial one, as an interruption does.
/// A visualization file that can't be written keeps the frames that it has; that is logged and makes the
/// visualization a partial one.
///
/// Running out of memory ends the loop in the same way, with nothing measured if it happens in the first
/// frame.
///
/// Frames are read on the calling thread; conversions and the metrics run on a team of threads. The
/// values and the log don't depend on the number of threads. Throws nothing.
void RunFrameLoop(RunState& state, const RunParameters& run, CResultsStore& store, RunOutcome& outcome);
