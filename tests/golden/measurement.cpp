#include "tests/golden/measurement.h"

#include <hwy/targets.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "tests/temporary_directory.h"

namespace {

using nlohmann::json;

std::string NumberText(const json& number) {
    if (number.is_null()) return "null";
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", number.get<double>());
    return text;
}

struct RunResult {
    json output;
    std::string errors;
};

/// A run in `directory`, whose output is JSON.
RunResult RunIn(const TemporaryDirectory& directory, const Program& program, const std::string& arguments) {
    std::string command = "cd '" + directory.Root().native() + "' && ";
    if (!program.vectors.empty())
        command += "TOLVANE_VECTORS=" + program.vectors + " LD_PRELOAD='" FORCED_VECTORS "' ";
    command += "'" + program.path + "' -q --json - --gpu-emulation " + program.options + " " + arguments;
    const int status = std::system((command + " >output.json 2>errors").c_str());
    const std::string errors = ReadWhole(directory.Path("errors"));
    json output = json::parse(ReadWhole(directory.Path("output.json")), nullptr, false);
    if (!output.is_discarded()) return {std::move(output), errors};
    throw std::runtime_error("status " + std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : status) +
                             " of " + command + "\n" + errors);
}

Row RowOf(const json& result) {
    Row row;
    row.key = result["id"].get<std::string>() + " " + result["component"].get<std::string>().substr(0, 1);
    row.firstFrame = result["first_frame"];
    row.average = NumberText(result["average"]);
    for (const char* name : {"settings", "result"}) {
        const std::string text = result[name];
        if (!text.empty()) row.key += " " + text;
    }
    for (const std::string file : result["files"])
        row.key += " " + std::filesystem::path(file).stem().native();
    for (const json& value : result["values"]) row.values.push_back(NumberText(value));
    return row;
}

/// The arguments that name a file of the case, which is written into `directory`.
std::string FileArguments(const TemporaryDirectory& directory, const std::string& role, Clip clip,
                          const std::string& form, int version) {
    clip.form = form;
    const std::string name = role + ClipEnding(clip);
    directory.Write(name, ClipFile(clip, version));
    const std::string arguments = " --" + role + " " + name;
    if (!IsRaw(clip)) return arguments;
    return arguments + " --" + role + "-layout " + form + " --" + role + "-size " +
           std::to_string(clip.width) + "x" + std::to_string(clip.height);
}

std::string AllFileArguments(const TemporaryDirectory& directory, const Program& program, const Case& what) {
    std::string arguments;
    if (what.OfSamples()) {
        for (const char* name : {"yard.y4m", "yard_x264.y4m"})
            directory.Write(name, ReadWhole(program.samples + "/" + name));
        arguments = " --original yard.y4m --processed yard_x264.y4m";
    } else {
        const std::string& form = what.processedForm.empty() ? what.clip.form : what.processedForm;
        arguments = FileArguments(directory, "original", what.clip, what.clip.form, 0);
        arguments += FileArguments(directory, "processed", what.clip, form, 1);
        if (what.processedFiles == 2) arguments += FileArguments(directory, "processed2", what.clip, form, 2);
    }
    if (what.maskForm.empty()) return arguments;
    const Clip mask{what.maskForm, what.Width(), what.Height(), what.OfSamples() ? 6 : what.clip.frames, {}};
    return arguments + FileArguments(directory, "mask", mask, what.maskForm, 3);
}

/// Whether a choice, in its metric's first component or another one, is one of a set of `Case::metrics`.
bool IsIn(const std::string& set, const MetricChoice& metric, bool first) {
    if (set == "each") return first || metric.id == "mse";
    if (set != "planes") return true;
    return metric.id == "mse" || metric.id == "delta" || metric.id == "blurring_metric" ||
           (first && (metric.id == "psnr" || metric.id == "ssim_precise"));
}

/// The metric options of each run.
std::vector<std::string> MetricArguments(const std::vector<MetricChoice>& metrics, const std::string& chosen,
                                         Split split) {
    if (chosen.starts_with("-")) return {chosen};
    std::vector<std::string> runs;
    std::map<std::string, std::size_t> runOf;  // by what a run is for
    std::string before;
    for (const auto& [id, component] : metrics) {
        const bool isFirst = std::exchange(before, id) != id;
        if (!IsIn(chosen, {id, component}, isFirst)) continue;
        std::string argument = " -m " + id + ":" + component;
        const std::string purpose = split == Split::ByMetric      ? argument
                                    : split == Split::ByComponent ? std::string(1, component)
                                                                  : "";
        const std::size_t run = runOf.emplace(purpose, runs.size()).first->second;
        if (run == runs.size()) runs.emplace_back();
        runs[run] += argument;
    }
    return runs;
}

}  // namespace

std::vector<std::string> VectorSets() {
    std::vector<std::string> names;
    for (const auto target : hwy::SupportedAndGeneratedTargets()) names.push_back(hwy::TargetName(target));
    return names;
}

void CheckVectors(const Program& program) {
    if (program.vectors.empty()) return;
    const TemporaryDirectory directory;
    const std::string files = AllFileArguments(directory, program, Case());
    if (RunIn(directory, program, files + " -m ssim_precise").errors != "vectors: " + program.vectors + "\n")
        throw std::runtime_error("the program doesn't obey --vectors " + program.vectors);
}

std::vector<MetricChoice> MetricsOf(const Program& program) {
    const TemporaryDirectory directory;
    std::vector<MetricChoice> metrics;
    for (const json& metric : RunIn(directory, program, "--list-metrics").output)
        for (const std::string component : metric["components"])
            metrics.push_back({metric["id"], component[0]});
    if (metrics.empty()) throw std::runtime_error("the program knows no metric");
    return metrics;
}

Section Measure(const Program& program, const std::vector<MetricChoice>& metrics, const Case& what,
                Split split) {
    const TemporaryDirectory directory;
    const std::string files = AllFileArguments(directory, program, what);
    Section section{what.name, files.substr(1), {}};
    if (!what.OfSamples()) section.files += ", " + std::to_string(what.clip.frames) + " frames";
    if (!what.options.empty()) section.files += ", " + what.options;
    for (const std::string& arguments : MetricArguments(metrics, what.metrics, split)) {
        const json output = RunIn(directory, program, files + " " + what.options + " " + arguments).output;
        for (const json& result : output["results"]) section.rows.push_back(RowOf(result));
    }
    return section;
}
