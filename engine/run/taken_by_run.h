#pragma once

#include "engine/model/measurement_job.h"
#include "output/taken_paths.h"

/// What the files that the run saves next must not be: its inputs with the mask, the files of others, and the
/// visualization files that it has saved.
TakenPaths TakenByRun(const RunParameters& run);
