#pragma once

class InterruptionToken;

/// While it lives, the first SIGINT, SIGTERM or SIGHUP stops the run at the end of its frame; a second one
/// ends the process at once, as it would have without this. A SIGHUP that was ignored at the start stays
/// ignored. One at a time in the process.
class StopSignals {
public:
    /// `token` outlives this.
    explicit StopSignals(InterruptionToken& token);
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;
};
