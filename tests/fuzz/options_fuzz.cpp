#include "cli/options.h"

#include <cstdint>
#include <sstream>
#include <string_view>
#include <vector>

#include "cli/job.h"
#include "metric/metric_types.h"
#include "tests/fuzz/metrics_with_plugins.h"
#include "video/raw_layout.h"

namespace {

void CheckJob(const MeasurementJob& job, const Metric::CMetricList& metrics) {
    Require(!job.selection.empty() && !job.run.inputFiles.empty());
    Require(job.metricSettings.size() == static_cast<std::size_t>(metrics.GetCount()));
    for (const SelectedMetric& selected : job.selection) {
        Require(selected.metricIndex >= 0 && selected.metricIndex < metrics.GetCount());
        Require(selected.component >= 0 && selected.component < Metric::kComponentCount);
    }
    for (const FileRecord& file : job.run.inputFiles) {
        Require(!file.name.empty() && (file.width > 0) == (file.height > 0));
        Require(file.width == 0 || RawFrameBytes(file.yuvType, file.width, file.height) > 0);
        Require(file.filter >= 0 && file.filter < 8);
    }
    Require(job.badFrames.count >= 0 && job.badFrames.radius >= 0);
}

}  // namespace

/// Takes the bytes for a command line, each line an argument. It becomes a job, or a message that names an option.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Metric::CMetricList& metrics = MetricsWithPlugins();
    std::vector<std::string> arguments = {"tolvane-measure"};
    std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
    for (std::string line; std::getline(lines, line);) arguments.push_back(line.c_str());  // up to a 0 byte
    std::vector<const char*> pointers;
    for (const std::string& argument : arguments) pointers.push_back(argument.c_str());
    try {
        std::string message;
        const auto options = ParseOptions(static_cast<int>(pointers.size()), pointers.data(), message);
        Require(options.has_value() == message.empty());
        if (!options) return 0;
        MeasurementJob job;
        FillJob(*options, job);
        CheckJob(job, metrics);
    } catch (const UsageError& error) {
        Require(std::string_view(error.what()).find('-') != std::string_view::npos);
    }
    return 0;
}
