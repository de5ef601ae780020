#pragma once

#include "tests/faults/faulty_program.h"
#include "tests/faults/values.h"

#include <map>
#include <optional>
#include <set>
#include <string>

/// What was in the files of an output before the run.
inline const std::string kOldContent = "old\n";

/// A run with the files that it left.
struct FinishedRun {
    FinishedRun(FaultyRun finished, std::map<std::string, std::string> left);

    FaultyRun run;
    std::map<std::string, std::string> files;  ///< by name
    std::set<std::string> output;              ///< the lines of standard output
    std::set<std::string> errors;              ///< those of standard error, without times
    std::string csv, json;                     ///< empty if not written
    std::string unreadable;  ///< why one of them couldn't be read; empty if both could or aren't there
    Columns csvColumns, jsonColumns;
    nlohmann::json report;  ///< what the JSON file says; null without it
};

/// What runs that nothing disturbs give, on all inputs that a disturbed one can have come to see: such as end
/// early, and whose mask ends early.
class KnownRuns {
public:
    void Add(FinishedRun run) { runs.push_back(std::move(run)); }
    /// The one on the complete inputs, the first that was added.
    const FinishedRun& Whole() const { return runs.front(); }

    /// What is wrong with a run that was disturbed, a line each; empty if it stands.
    std::string Complaints(const FinishedRun& disturbed) const;

private:
    void CheckStatus(const FinishedRun& disturbed, std::string& complaints) const;
    void CheckValues(const FinishedRun& disturbed, std::string& complaints) const;
    void CheckPictures(const FinishedRun& disturbed, std::string& complaints) const;
    bool IsKnown(Columns FinishedRun::*columns, const std::string& key, const Column& column,
                 bool mayLackValue) const;
    bool IsKnownFile(const std::string& name, const std::string& bytes) const;
    bool IsStartOfKnownVideo(const std::string& name, const std::vector<std::string>& frames) const;

    std::vector<FinishedRun> runs;
};
