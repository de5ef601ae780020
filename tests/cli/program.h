#pragma once

#include <string>

#include "tests/temporary_directory.h"

/// A finished run of tolvane-measure.
struct ProgramRun {
    int status = 0;  ///< exit status; 128 and the number for a signal
    std::string output;
    std::string errors;
};

/// Runs tolvane-measure by a shell, with arguments and redirections as a shell reads them, in the current
/// directory.
ProgramRun RunProgram(const std::string& arguments);
