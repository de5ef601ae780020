#pragma once

#include "app/shell/run_feed.h"
#include "engine/model/measurement_job.h"
#include "engine/run/run_observer.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <thread>

class QWidget;

/// The window of a run. Called on the thread of the windows.
class IRunWindow {
public:
    /// The window itself, which questions about the run stand over.
    virtual QWidget* Widget() = 0;
    /// What has come in since the last call, in order.
    virtual void Show(const std::vector<RunEvent>& events) = 0;
    /// The last call; everything else was shown before. The worker waits until it returns.
    virtual void RunFinished(std::unique_ptr<FinishRecord> record) = 0;
    /// Doesn't wait for the user any more: leaves the run as soon as it is over.
    virtual void LeaveSoon() = 0;
    virtual ~IRunWindow() = default;
};

/// A run in a thread of its own. Its window is told of it 30 times a second at most, and the run waits for
/// the window at its end only. Made, started and destroyed on the thread of the windows.
class RunThread : private IRunVoices, private IRunObserver {
public:
    /// Both outlive the thread; the job is the run's from `Start` to its end. The log begins with `notes`.
    RunThread(MeasurementJob& job, IRunWindow& window, std::vector<std::wstring> notes = {});

    /// Stops a run that is still going on, and waits for its end.
    ~RunThread() override;
    RunThread(const RunThread&) = delete;
    RunThread& operator=(const RunThread&) = delete;

    /// Once. Throws std::system_error if there is no thread to be had.
    void Start();

    /// From `Start` until just before the window hears of the end.

    // What a user does meanwhile; all three change nothing once the run is over.
    void Pause() { job.run.interruption->Pause(); }
    void Resume() { job.run.interruption->Resume(); }
    void Stop() { job.run.interruption->Stop(); }

private:
    std::unique_ptr<IProgress> CreateProgress() override;
    std::unique_ptr<ILog> CreateLog(const std::wstring& path) override;
    void SetRunActive(bool active) override { runActive = active; }
    void WithdrawStop() override;
    void RunFinished(std::unique_ptr<FinishRecord> record) override;

    void ShowEvents();

    MeasurementJob& job;
    IRunWindow& window;
    const std::vector<std::wstring> notes;
    RunFeed feed;
    std::atomic<bool> runActive = false;
    std::atomic<bool> isReported = false;
    QObject receiver;  // of the call at the end
    QTimer fetching;
    std::thread thread;
};
