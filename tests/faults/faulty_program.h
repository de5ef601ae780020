#pragma once

#include "tests/faults/fault_plan.h"

#include <sys/types.h>

#include <string>
#include <vector>

/// What came of a run of tolvane-measure under a plan.
struct FaultyRun {
    int status = 0;  ///< exit status; 128 and the number for a signal
    bool hung = false;
    std::string output;
    std::string errors;
    std::uint32_t calls = 0;   ///< that counted
    std::uint32_t faults = 0;  ///< how many of them went wrong
};

/// tolvane-measure with the library of faults, started once for many runs with the same arguments.
class FaultyProgram {
public:
    /// `directory` is there for the two streams. Faults are in files below `watched`, which is the program's
    /// current directory.
    FaultyProgram(const std::vector<std::string>& arguments, const std::string& directory,
                  const std::string& watched);
    ~FaultyProgram();
    FaultyProgram(const FaultyProgram&) = delete;
    FaultyProgram& operator=(const FaultyProgram&) = delete;

    FaultyRun Run(const FaultPlan& plan);

private:
    std::string outputPath;
    std::string errorsPath;
    int plans = -1;
    int answers = -1;
    pid_t process = -1;
};
