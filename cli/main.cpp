#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include <omp.h>

#include "catalogue/metric_list.h"
#include "cli/codec_option.h"
#include "cli/exit_status.h"
#include "cli/headless_run.h"
#include "cli/job.h"
#include "cli/options.h"
#include "cli/output_clash.h"
#include "cli/report.h"
#include "cli/stop_signals.h"
#include "platform/file.h"
#include "platform/text.h"
#include "platform/vfw/avi_file.h"
#include "video/avisynth/temporary_script.h"

namespace {

/// False if standard output is closed or full.
bool Print(const std::string& text) {
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

constexpr std::string_view kNoMemory = "not enough memory";

/// Takes no memory of its own: the lack of it may be what there is to say.
void Complain(std::string_view line) {
    std::fprintf(stderr, "tolvane-measure: %.*s\n", static_cast<int>(line.size()), line.data());
}

/// Exactly one line, whatever the names in `text` hold.
std::string OneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return text;
}

/// Writes `text` to a file, or to standard output for "-". Says so if that fails.
bool Deliver(const std::wstring& path, const std::string& text) {
    if (path == L"-" ? Print(text) : ReplaceFile(path, text)) return true;
    Complain(OneLine("can't write the results to " +
                     (path == L"-" ? "standard output" : '"' + ToUtf8(path) + '"')));
    return false;
}

/// A long run's results may be more than there is memory for once again, as text.
bool DeliverReport(const std::wstring& path, std::string (*textOf)(const RunReport&),
                   const RunReport& report) {
    try {
        return Deliver(path, textOf(report));
    } catch (const std::bad_alloc&) {
        Complain(kNoMemory);
        return false;
    }
}

int ListMetrics(const Options& options) {
    if (!options.json) return Deliver(L"-", MetricListText()) ? ExitComplete : ExitPartial;
    return Deliver(options.json->empty() ? L"-" : *options.json, MetricListJson()) ? ExitComplete
                                                                                   : ExitPartial;
}

/// Whether everything that was to be saved is saved; says what isn't.
bool DeliverResults(const Options& options, const HeadlessRun& run, const MeasurementJob& job) {
    const RunReport report = {*run.finish, job.run, run.log.lines};
    const bool hasJson = !options.json || DeliverReport(*options.json, JsonReport, report);
    const bool hasText = options.json == L"-" || DeliverReport(L"-", TextReport, report);
    if (!run.log.fileComplete) Complain(OneLine("can't write the log to \"" + ToUtf8(options.log) + "\""));
    return run.log.fileComplete && hasJson && hasText;
}

/// Delivers a run that is over. It has its results, also if there is no memory left for some of them.
int Conclude(const Options& options, const HeadlessRun& run, const MeasurementJob& job) {
    ExitStatus status = ExitPartial;
    try {
        status = StatusOf(*run.finish, job);
        if (options.quiet && status != ExitComplete) {
            Complain(status == ExitNothing
                         ? "nothing was measured; the log that --quiet leaves out says why"
                         : "not everything was measured and saved; the log that --quiet leaves out says why");
        }
        if (DeliverResults(options, run, job)) return status;
    } catch (const std::bad_alloc&) {
        Complain(kNoMemory);
    }
    return status == ExitComplete ? ExitPartial : status;
}

int Measure(const Options& options) {
    MeasurementJob job;
    job.run.interruption = std::make_unique<InterruptionToken>();
    const StopSignals signals(*job.run.interruption);  // until the results are delivered
    FillJob(options, job);
    CheckOutputsClash(options);
    job.run.reservedPaths = NamedOutputs(options);
    if (options.threads > 0) omp_set_num_threads(options.threads);

    rkRemoveStaleScript();
    return Conclude(options, RunHeadless(options, job), job);
}

int Run(int argc, const char* const* argv) {
    const AviFileSession session;
    try {
        std::string message;
        const std::optional<Options> options = ParseOptions(argc, argv, message);
        if (!options) return Deliver(L"-", message) ? ExitComplete : ExitPartial;
        if (options->listCodecs) return Deliver(L"-", CodecListText()) ? ExitComplete : ExitPartial;
        if (options->gpuEmulation) Metric::EmulateGpu();
        return options->listMetrics ? ListMetrics(*options) : Measure(*options);
    } catch (const UsageError& error) {
        Complain(OneLine(error.what()));
        return ExitUsage;
    } catch (const std::bad_alloc&) {
        Complain(kNoMemory);
        return ExitNothing;
    } catch (const std::exception& error) {
        Complain(OneLine(error.what()));
        return ExitNothing;
    }
}

}  // namespace

int main(int argc, char** argv) {
    // A closed pipe and a file at its size limit show as failed writes.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    return Run(argc, argv);
}
