#pragma once

#include "app/shell/run_feed.h"
#include "engine/model/log.h"
#include "engine/model/progress.h"

#include <chrono>

/// Lines for the window's log, which also go to the log file and, with it, to standard output. If that gets
/// lost, the window's log says so, once.
class CLogInterface : public ILog {
public:
    /// The feed outlives the log.
    CLogInterface(const std::wstring& path, RunFeed& runFeed) : feed(runFeed), filePath(path), file(path) {}

    bool Log(const std::wstring& message) override;

private:
    RunFeed& feed;
    const std::wstring filePath;
    CLogConsole file;
    bool isLossTold = false;
};

/// Positions for the window's bar. The line that announces the run goes to the window's log only.
class CProgressInterface : public IProgress {
public:
    /// The feed outlives the progress.
    explicit CProgressInterface(RunFeed& runFeed) : feed(runFeed) { ShowRange(); }

    void Start(const MetricSelection& selection, const std::vector<std::wstring>& names) override;
    void SetMinimum(int value) override;
    void SetMaximum(int value) override;
    void SetPosition(int position) override;
    void Finish() override;

private:
    using Clock = std::chrono::steady_clock;

    void ShowRange();

    RunFeed& feed;
    int minimum = 0;
    int maximum = 100;
    Clock::time_point start = Clock::now();
};
