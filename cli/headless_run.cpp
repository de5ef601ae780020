#include "cli/headless_run.h"

#include <unistd.h>

#include <utility>

#include "cli/progress_bar.h"
#include "cli/terminal.h"
#include "engine/run/measurement_worker.h"

namespace {

bool WantsBar(ProgressMode mode) {
    return mode == ProgressMode::Always || (mode == ProgressMode::Auto && isatty(STDERR_FILENO) == 1);
}

/// The run's two voices on standard error, and the record that it ends with.
class HeadlessSession : public IRunVoices, public IRunObserver {
public:
    explicit HeadlessSession(const Options& runOptions) : options(runOptions) {}

    std::unique_ptr<IProgress> CreateProgress() override {
        if (!WantsBar(options.progress)) return nullptr;
        return std::make_unique<ProgressBar>(terminal, options.quiet);
    }
    /// The log file is the one that the options name, if any.
    std::unique_ptr<ILog> CreateLog(const std::wstring&) override {
        return std::make_unique<ConsoleLog>(terminal, options.quiet, options.log, run.log);
    }

    void SetRunActive(bool) override {}
    void WithdrawStop() override {}
    void RunFinished(std::unique_ptr<FinishRecord> record) override { run.finish = std::move(record); }

    HeadlessRun TakeRun() { return std::move(run); }

private:
    const Options& options;
    Terminal terminal;
    HeadlessRun run;
};

}  // namespace

HeadlessRun RunHeadless(const Options& options, MeasurementJob& job) {
    HeadlessSession session(options);
    MeasurementWorker(job, session, session);
    return session.TakeRun();
}
