#pragma once

#include <memory>
#include <string>

#include "engine/model/finish_record.h"
#include "engine/model/log.h"
#include "engine/model/progress.h"

/// Gives a run its log and its progress. Called on the worker's thread before the run; both are destroyed on
/// it, before the run is reported as finished.
class IRunVoices {
public:
    /// May return null.
    virtual std::unique_ptr<IProgress> CreateProgress() = 0;
    /// `path` is where the program keeps its log file. May return null.
    virtual std::unique_ptr<ILog> CreateLog(const std::wstring& path) = 0;
    virtual ~IRunVoices() = default;
};

/// Follows the stages of a run. Called on the worker's thread.
class IRunObserver {
public:
    /// From the worker's first step until just before `RunFinished`.
    virtual void SetRunActive(bool active) = 0;
    /// The frames are over: there is nothing left that could be stopped.
    virtual void WithdrawStop() = 0;
    /// The last call. The record belongs to the observer, and the worker waits until this returns.
    virtual void RunFinished(std::unique_ptr<FinishRecord> record) = 0;
    virtual ~IRunObserver() = default;
};
