#pragma once

/// How much of a run came about.
enum Completion : int {
    CompletionNothing = 0,
    CompletionPartial = 1,  ///< results may exist, but something was skipped or the run was interrupted
    CompletionAll = 2,
};

struct RunOutcome {
    int measurement = CompletionAll;    ///< of every frame of every metric
    int visualization = CompletionAll;  ///< of the visualization output and the input files

    friend bool operator==(const RunOutcome&, const RunOutcome&) = default;
};
