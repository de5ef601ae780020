#pragma once

#include <atomic>
#include <semaphore>

/// How a user's thread pauses and stops a run, which polls `KeepRunning` once a frame. The other operations
/// never wait and may come at any time and in any number: `Pause` and `Resume` from one thread, `Stop` from
/// any, a signal handler included.
class InterruptionToken {
public:
    /// Holds the run at its next poll until `Resume`. A run that is polling at this very moment gets past.
    void Pause() {
        if (semaphore.try_acquire()) isPaused = true;
    }

    /// Lets a paused run go on, or stop if that was asked for meanwhile.
    void Resume() {
        if (isPaused.exchange(false)) semaphore.release();
    }

    /// Ends the run at its next poll.
    void Stop() { keepRunning = false; }

    /// Waits while the token is paused, however long that is. False once the run is to stop.
    bool KeepRunning() {
        semaphore.acquire();
        semaphore.release();
        return keepRunning;
    }

private:
    std::atomic<bool> keepRunning = true;
    std::atomic<bool> isPaused = false;  // the semaphore is held by Pause: it must not be given back twice
    std::binary_semaphore semaphore{1};
};
