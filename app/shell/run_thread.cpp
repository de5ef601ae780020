#include "app/shell/run_thread.h"

#include "app/shell/run_voices.h"
#include "engine/run/measurement_worker.h"

#include <QCoreApplication>

#include <chrono>
#include <utility>

namespace {

// Just below 30 times a second. A precise timer: others may be early.
constexpr std::chrono::milliseconds kFetchInterval{34};

constexpr std::chrono::milliseconds kWaitStep{5};

}  // namespace

RunThread::RunThread(MeasurementJob& runJob, IRunWindow& runWindow, std::vector<std::wstring> logNotes)
    : job(runJob), window(runWindow), notes(std::move(logNotes)) {
    fetching.setTimerType(Qt::PreciseTimer);
    fetching.setInterval(kFetchInterval);
    QObject::connect(&fetching, &QTimer::timeout, &receiver, [this] { ShowEvents(); });
}

void RunThread::Start() {
    runActive = true;  // already now: the window may offer "Stop" before the thread gets to run
    try {
        thread = std::thread([this] { MeasurementWorker(job, *this, *this); });
    } catch (...) {
        runActive = false;
        throw;
    }
    fetching.start();
}

RunThread::~RunThread() {
    if (!thread.joinable()) return;
    Stop();
    Resume();
    // Normally the end is reported by now. If not, as when the session ends and takes the event loops with
    // it, the worker still waits for this thread to hear of it.
    while (!isReported) {
        QCoreApplication::sendPostedEvents(&receiver, QEvent::MetaCall);
        std::this_thread::sleep_for(kWaitStep);
    }
    thread.join();
}

std::unique_ptr<IProgress> RunThread::CreateProgress() {
    return std::make_unique<CProgressInterface>(feed);
}

std::unique_ptr<ILog> RunThread::CreateLog(const std::wstring& path) {
    auto log = std::make_unique<CLogInterface>(path, feed);
    for (const std::wstring& note : notes) log->Log(note);
    return log;
}

void RunThread::WithdrawStop() {
    feed.Add({.kind = RunEvent::Kind::StopWithdrawn});
}

void RunThread::RunFinished(std::unique_ptr<FinishRecord> record) {
    QMetaObject::invokeMethod(
        &receiver,
        [&] {
            fetching.stop();
            ShowEvents();
            window.RunFinished(std::move(record));
        },
        Qt::BlockingQueuedConnection);
    isReported = true;
}

void RunThread::ShowEvents() {
    window.Show(feed.Take());
}
