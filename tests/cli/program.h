#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tests/temporary_directory.h"

inline const std::string kOriginal = SAMPLES_DIR "/yard.y4m", kProcessed = SAMPLES_DIR "/yard_x264.y4m";
/// Six frames of 176 by 144.
inline const std::string kPair = "--original " + kOriginal + " --processed " + kProcessed;

/// A finished run of tolvane-measure.
struct ProgramRun {
    int status = 0;  ///< exit status; 128 and the number for a signal
    std::string output;
    std::string errors;

    bool Says(const std::string& text) const { return errors.find(text) != errors.npos; }
};

/// Runs tolvane-measure by a shell, with arguments and redirections as a shell reads them, in the current
/// directory.
ProgramRun RunProgram(const std::string& arguments);

/// What a run writes as JSON; a failure if it doesn't end with `status`.
nlohmann::json Measured(const std::string& arguments, int status = 0);
