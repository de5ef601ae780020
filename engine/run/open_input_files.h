#pragma once

#include "engine/model/measurement_job.h"
#include "engine/model/run_outcome.h"
#include "engine/run/run_state.h"

/// A source's kind, layout and rate in one line, as the log shows it.
std::wstring DescriptionOf(rkIVideoSource& source);

/// Opens the run's files in order, then its mask if a file opened, and logs each step. `opened` starts empty.
///
/// `width`, `height`  the pictures' size, that of the first file that opens. Other sizes are left out.
/// `length`           frames of the shortest file. A mask that is shorter is left out.
/// `originalOpened`   set to false if the file of index 0 doesn't open.
/// `outcome`          becomes partial in both fields for each file that doesn't open. May be null.
///
/// Size and length stay as they are if no file opens. Throws std::bad_alloc.
void OpenInputFiles(OpenedFiles& opened, const RunParameters& run, RunOutcome* outcome, int& width,
                    int& height, int& length, bool& originalOpened);
