#pragma once

#include <memory>
#include <string>
#include <vector>

#include "engine/model/results_store.h"
#include "engine/model/run_outcome.h"

/// What a finished run leaves to the one who started it.
struct FinishRecord {
    std::unique_ptr<CResultsStore> results;
    std::unique_ptr<std::vector<int>> badFrames;  ///< frame numbers, ascending; null if none were selected
    std::unique_ptr<RunOutcome> outcome;
    int yuvTable = 0;                              ///< the colour matrix of the run
    bool runResult = false;                        ///< what `RunMeasurement` returned
    std::wstring csvPath;                          ///< of the CSV file that was saved; empty if none was
    std::vector<std::wstring> visualizationPaths;  ///< of the visualization files that are complete
    std::vector<std::wstring> badFramePaths;       ///< of the pictures of bad frames that were saved
};
