// Runs of the headless program, one after the other in one process:  engine_soak MINUTES [ROUNDS]
// Everything but its `main`: each file format, all metrics, all outputs, and runs that fail or are stopped.

#include "catalogue/metric_list.h"
#include "cli/exit_status.h"
#include "cli/headless_run.h"
#include "cli/job.h"
#include "cli/options.h"
#include "cli/output_clash.h"
#include "cli/report.h"
#include "platform/text.h"
#include "tests/faults/scenario.h"
#include "tests/soak/soak.h"
#include "tests/temporary_directory.h"

#include <omp.h>

#include <cstdlib>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

struct Run {
    std::string name;
    Words arguments;
    ExitStatus status = ExitComplete;
    bool isStopped = false;  ///< after its first frame
};

ExitStatus Measure(const Run& run) {
    std::vector<const char*> words = {"tolvane-measure", "--quiet"};
    for (const std::string& word : run.arguments) words.push_back(word.c_str());
    std::string message;
    const std::optional<Options> options =
        ParseOptions(static_cast<int>(words.size()), words.data(), message);
    MeasurementJob job;
    job.run.interruption = std::make_unique<InterruptionToken>();
    FillJob(*options, job);
    CheckOutputsClash(*options);
    job.run.reservedPaths = NamedOutputs(*options);
    if (options->threads > 0) omp_set_num_threads(options->threads);
    if (run.isStopped) job.run.interruption->Stop();
    const HeadlessRun headless = RunHeadless(*options, job);
    const RunReport report = {*headless.finish, job.run, headless.log.lines};
    if (TextReport(report).empty() && run.status == ExitComplete) std::abort();
    if (JsonReport(report).empty()) std::abort();
    return StatusOf(*headless.finish, job);
}

Words With(Words words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

/// Every metric of the list on its first component, the ones for GPUs on the host.
Words AllMetrics() {
    const Metric::CMetricList& metrics = Metric::GetMetricList();
    Words words;
    for (int i = 0; i < metrics.GetCount(); ++i) words = With(words, {"-m", ToUtf8(metrics.GetId(i))});
    return words;
}

std::vector<Run> Runs(const fs::path& root) {
    std::vector<Run> runs;
    for (const Scenario& scenario : kScenarios) {
        const fs::path in = root / scenario.name / "in", out = root / scenario.name / "out";
        fs::create_directories(in);
        fs::create_directories(out);
        WriteInputs(scenario, in, scenario.Frames(), scenario.Frames());
        runs.push_back({scenario.name, Arguments(scenario, in, out)});
    }
    const std::string yard = TOLVANE_SAMPLES "/yard.y4m", text = TOLVANE_SAMPLES "/README.md";
    const Words samples = {"--original", yard, "--processed", TOLVANE_SAMPLES "/yard_x264.y4m"};
    const fs::path pictures = root / "pictures";
    fs::create_directories(pictures);
    const auto add = [&](const char* name, const Words& more, ExitStatus status = ExitComplete,
                         bool isStopped = false) {
        runs.push_back({name, With(samples, more), status, isStopped});
    };
    add("all metrics", AllMetrics());
    add("two threads", {"--threads", "2", "-m", "ssim_precise", "-m", "psnr:R"});
    add("all pictures",
        {"--visualize", pictures, "--codec", "MJPG", "-m", "ssim_precise", "-m", "3ssim", "-m", "msad:L"});
    add("scripts", {"--avs"});
    add("stopped", {}, ExitPartial, true);
    add("no such directory", {"--visualize", "/nowhere", "--log", "/nowhere/log"}, ExitPartial);
    runs.push_back({"no such file", {"--original", "/nowhere", "--processed", yard}, ExitNothing});
    runs.push_back({"no video", {"--avs", "--original", text, "--processed", text}, ExitNothing});
    return runs;
}

}  // namespace

int main(int argc, char** argv) {
    Metric::EmulateGpu();
    const TemporaryDirectory root;
    const std::vector<Run> runs = Runs(root.Root());
    fs::current_path(root.Root());  // scripts are written there
    const std::string what = "engine: " + std::to_string(runs.size()) + " runs a round, in one process";
    return Soak(argc, argv, what, stdout, [&runs] {
        for (const Run& run : runs)
            if (const ExitStatus status = Measure(run); status != run.status)
                throw std::runtime_error(run.name + " ends with " + std::to_string(status) + " instead of " +
                                         std::to_string(run.status));
        return static_cast<int>(runs.size());
    });
}
