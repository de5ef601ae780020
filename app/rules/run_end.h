#pragma once

#include <map>

#include "app/rules/shell_state.h"
#include "engine/model/run_outcome.h"

/// Leaving a run: the phase becomes `Viewing` if the results are to be shown, which only those of a complete
/// measurement are, otherwise `Editing`. The caller sets `Editing` when the viewer has closed.
void LeaveRun(ShellState& state, const RunOutcome& outcome);

/// The files that the viewer names and reads, by their index: 0 original, 1 first processed, 2 second
/// processed.
std::map<int, FileRecord> ViewerFiles(const MeasurementJob& job);
