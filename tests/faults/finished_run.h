#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

/// What was in the files of an output before the run.
inline const std::string kOldContent = "old\n";

/// A result as a file shows it: the average, then the values of the frames from 0 on, numbers as the very
/// text.
using Column = std::vector<std::string>;
/// By the result's name and its files.
using Columns = std::map<std::string, Column>;

/// What came of a run of tolvane-measure.
struct FinishedRun {
    FinishedRun(int waitStatus, std::string output, std::string errors,
                std::map<std::string, std::string> left);

    int status;  ///< exit status; 128 and the number for a signal
    bool hung;
    std::string output, errors;
    std::map<std::string, std::string> files;       ///< by name
    std::set<std::string> outputLines, errorLines;  ///< without times
    Columns csv, json;                              ///< empty if not written
    nlohmann::json report;                          ///< what the JSON file says; null without it
    std::string unreadable;  ///< why one of the two couldn't be read; empty if both could or aren't there
};

/// What is wrong with a run that was disturbed, a line each; empty if it stands. `known` are runs that nothing
/// disturbs, on all inputs that a disturbed one can have come to see: such as end early, and whose mask ends
/// early. The first one is on the complete inputs.
std::string Complaints(const FinishedRun& disturbed, const std::vector<FinishedRun>& known);
