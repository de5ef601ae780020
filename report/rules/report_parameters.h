#pragma once

#include <map>
#include <vector>

#include "engine/model/file_record.h"
#include "engine/model/results_store.h"

/// What the results viewer shows. All of it is read only and outlives the viewer.
struct ReportParameters {
    const CResultsStore& results;
    const std::vector<int>* badFrames = nullptr;  ///< frame numbers, ascending; null if none were saved
    std::map<int, FileRecord> files;              ///< 0 the original, 1 and 2 the first and second processed
    int yuvTable = 0;                             ///< the colour matrix of the run
};
