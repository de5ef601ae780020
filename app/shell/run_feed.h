#pragma once

#include <mutex>
#include <string>
#include <vector>

/// What a run says to its window.
struct RunEvent {
    enum class Kind {
        Line,           ///< a line for the log
        Range,          ///< the bar goes from `first` to `last`, the frames of the run
        Position,       ///< frame number `first` is done, `seconds` after the first one began
        FramesOver,     ///< the bar goes back to its start
        StopWithdrawn,  ///< there is nothing left that could be stopped
    };

    Kind kind;
    std::wstring line = {};
    int first = 0;
    int last = 0;
    double seconds = 0;
};

/// The way of these events from the worker's thread to that of the windows, which fetches them when it likes
/// to: nobody waits for the other. They arrive in order; of positions without anything between them only the
/// last one does.
class RunFeed {
public:
    /// Any thread.
    void Add(RunEvent event);
    /// Everything that has come in since the last call. Any thread.
    std::vector<RunEvent> Take();

private:
    std::mutex mutex;
    std::vector<RunEvent> events;
};
