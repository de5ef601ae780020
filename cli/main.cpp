#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>

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

/// Exactly one line, whatever the names in `text` hold.
void Complain(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    std::fprintf(stderr, "tolvane-measure: %s\n", text.c_str());
}

/// Writes `text` to a file, or to standard output for "-". Says so if that fails.
bool Deliver(const std::wstring& path, const std::string& text) {
    if (path == L"-" ? Print(text) : ReplaceFile(path, text)) return true;
    Complain("can't write the results to " + (path == L"-" ? "standard output" : '"' + ToUtf8(path) + '"'));
    return false;
}

int ListMetrics(const Options& options) {
    if (!options.json) return Deliver(L"-", MetricListText()) ? ExitComplete : ExitPartial;
    return Deliver(options.json->empty() ? L"-" : *options.json, MetricListJson()) ? ExitComplete
                                                                                   : ExitPartial;
}

/// Whether everything that was to be saved is saved; says what isn't.
bool DeliverResults(const Options& options, const HeadlessRun& run, const MeasurementJob& job) {
    const RunReport report = {*run.finish, job.run, run.log.lines};
    if (!run.log.fileComplete) Complain("can't write the log to \"" + ToUtf8(options.log) + "\"");
    const bool hasJson = !options.json || Deliver(*options.json, JsonReport(report));
    const bool hasText = options.json == L"-" || Deliver(L"-", TextReport(report));
    return run.log.fileComplete && hasJson && hasText;
}

int Measure(const Options& options) {
    MeasurementJob job;
    FillJob(options, job);
    CheckOutputsClash(options);
    job.run.reservedPaths = NamedOutputs(options);
    if (options.threads > 0) omp_set_num_threads(options.threads);

    rkRemoveStaleScript();
    job.run.interruption = std::make_unique<InterruptionToken>();
    const StopSignals signals(*job.run.interruption);  // until the results are delivered
    const HeadlessRun run = RunHeadless(options, job);
    const ExitStatus status = StatusOf(*run.finish, job);
    if (options.quiet && status != ExitComplete) {
        Complain(std::string(status == ExitNothing ? "nothing was measured"
                                                   : "not everything was measured and saved") +
                 "; the log that --quiet leaves out says why");
    }
    return DeliverResults(options, run, job) || status != ExitComplete ? status : ExitPartial;
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
        Complain(error.what());
        return ExitUsage;
    } catch (const std::exception& error) {  // out of memory, for one
        Complain(error.what());
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
