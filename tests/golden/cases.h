#pragma once

#include <string>
#include <vector>

#include "tests/golden/clip_file.h"

/// How the metrics of a case are spread over runs of the program. The values mustn't depend on it.
enum class Split { None, ByComponent, ByMetric };

/// One section of the table: files, options, metrics.
struct Case {
    std::string name;  ///< of its section
    Clip clip;         ///< of all files; without a form the sample clips
    /// "all" metrics in all components, "each" metric in its first one and MSE in all, "planes" for those
    /// that show what a plane holds, or the options themselves.
    std::string metrics;
    std::string options;  ///< further ones
    int processedFiles = 1;
    std::string maskForm;       ///< a mask of this form; empty for none
    std::string processedForm;  ///< if it isn't the original's
    Split split = Split::None;  ///< measured a second time in this way

    bool OfSamples() const { return clip.form.empty(); }
    int Width() const { return OfSamples() ? 176 : clip.width; }
    int Height() const { return OfSamples() ? 144 : clip.height; }
};

/// In the order of the table.
std::vector<Case> GoldenCases();
