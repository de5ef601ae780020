#include "cli/report.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "catalogue/metric_list.h"
#include "output/series_statistics.h"
#include "platform/program_version.h"
#include "platform/text.h"

namespace {

using Json = nlohmann::ordered_json;

std::string NineDigits(double value) {
    if (std::isnan(value)) return "nan";  // the library shows its sign, which says nothing
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

/// A number that the JSON text shows with nine significant digits; null if it isn't finite.
Json Number(double value) {
    if (!std::isfinite(value)) return nullptr;
    return std::strtod(NineDigits(value).c_str(), nullptr);
}

/// Without a frame a metric's answer for the sequence says nothing.
bool HasAverage(const CResultsStore& store, int id, float& average) {
    int firstFrame = 0;
    return store.GetAverage(id, average) && store.GetFirstFrame(id, firstFrame);
}

Json Optional(const std::wstring& path) {
    return path.empty() ? Json(nullptr) : Json(ToUtf8(path));
}

Json StatisticsJson(const std::vector<FrameValue>& series) {
    const SeriesStatistics s = StatisticsOf(series);
    return {{"min", Number(s.min)},       {"max", Number(s.max)}, {"mean", Number(s.mean)},
            {"stddev", Number(s.stddev)}, {"p5", Number(s.p5)},   {"p50", Number(s.p50)},
            {"p95", Number(s.p95)}};
}

Json ResultJson(const CResultsStore& store, int id) {
    const Metric::CMetricList& metrics = Metric::GetMetricList();
    ResultRecord record;
    store.GetResultRecord(id, record);
    float average = 0;
    const bool hasAverage = HasAverage(store, id, average);
    const std::vector<FrameValue> series = store.GetSeries(id);

    Json files = Json::array();
    for (const FileRecord& file : record.files) files.push_back(ToUtf8(file.name));
    Json values = Json::array();
    for (const FrameValue& entry : series) values.push_back(Number(entry.value));
    return {{"id", ToUtf8(metrics.GetId(record.metricIndex))},
            {"name", ToUtf8(metrics.GetName(record.metricIndex))},
            {"unit", ToUtf8(metrics.GetUnit(record.metricIndex))},
            {"component", ToUtf8(Metric::ComponentName(record.component))},
            {"settings", ToUtf8(record.settings)},
            {"result", ToUtf8(record.name)},
            {"higher_is_better", metrics.IsHigherBetter(record.metricIndex)},
            {"files", files},
            {"average", hasAverage ? Number(average) : Json(nullptr)},
            {"first_frame", series.empty() ? 0 : series.front().frame},
            {"values", values},
            {"statistics", StatisticsJson(series)}};
}

Json InputJson(const RunParameters& run, const OpenedInput& input) {
    const bool isMask = input.file < 0;
    const FileRecord& record = isMask ? run.maskFile : run.inputFiles[static_cast<std::size_t>(input.file)];
    return {{"file", ToUtf8(record.name)},
            {"role", isMask            ? "mask"
                     : input.file == 0 ? "original"
                                       : "processed"},
            {"width", run.width},
            {"height", run.height},
            {"length", input.frameCount},
            {"through_script", record.useAvs},
            {"description", ToUtf8(input.description)}};
}

/// What the run measured, as far as it opened: all of one size.
Json InputsJson(const RunParameters& run) {
    Json inputs = Json::array();
    for (const OpenedInput& input : run.openedInputs) inputs.push_back(InputJson(run, input));
    return inputs;
}

Json MaskedPixels(const RunParameters& run) {
    if (!run.maskOpened) return nullptr;
    return run.blackMask ? "black" : "bright";
}

Json BadFramesJson(const FinishRecord& finish) {
    return finish.badFrames ? Json(*finish.badFrames) : Json(nullptr);
}

Json PathsJson(const std::vector<std::wstring>& paths) {
    Json json = Json::array();
    for (const std::wstring& path : paths) json.push_back(ToUtf8(path));
    return json;
}

/// File names may hold bytes that are no UTF-8; JSON can't.
std::string Dump(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string ComponentLetters(const std::vector<int>& components) {
    std::string letters;
    for (const int component : components) letters += ToUtf8(Metric::ComponentName(component)).substr(0, 1);
    return letters;
}

std::string BadFramesText(const FinishRecord& finish) {
    if (!finish.badFrames) return {};
    std::string text = "Bad frames";
    for (const int frame : *finish.badFrames) text += " " + std::to_string(frame);
    return text + (finish.badFrames->empty() ? " none\n" : "\n");
}

}  // namespace

std::string TextReport(const RunReport& report) {
    const Metric::CMetricList& metrics = Metric::GetMetricList();
    const CResultsStore& store = *report.finish.results;
    std::string text;
    for (const int id : store.GetResultIds()) {
        ResultRecord record;
        store.GetResultRecord(id, record);
        float average = 0;
        const bool hasAverage = HasAverage(store, id, average);
        const std::wstring unit = metrics.GetUnit(record.metricIndex);

        text += ToUtf8(metrics.GetName(record.metricIndex));
        if (!record.name.empty()) text += "_" + ToUtf8(record.name);
        text += " " + ToUtf8(Metric::ComponentName(record.component));
        for (const FileRecord& file : record.files) text += " " + ToUtf8(FileNamePart(file.name));
        text += " " + (hasAverage ? NineDigits(average) : std::string("none"));
        text += (unit.empty() ? "" : " " + ToUtf8(unit)) + "\n";
    }
    return text + BadFramesText(report.finish);
}

std::string JsonReport(const RunReport& report) {
    const FinishRecord& finish = report.finish;
    Json results = Json::array();
    for (const int id : finish.results->GetResultIds()) results.push_back(ResultJson(*finish.results, id));
    Json log = Json::array();
    for (const std::wstring& line : report.logLines) log.push_back(ToUtf8(line));

    return Dump(
        {{"program", "Tolvane"},
         {"version", ProgramVersion()},
         {"width", report.run.width},
         {"height", report.run.height},
         {"length", report.run.length},
         {"matrix", report.run.yuvTable == 0 ? "REC.601" : "PC.601"},
         {"inputs", InputsJson(report.run)},
         {"masked_pixels", MaskedPixels(report.run)},
         {"outcome",
          {{"measurement", finish.outcome->measurement}, {"visualization", finish.outcome->visualization}}},
         {"results", results},
         {"bad_frames", BadFramesJson(finish)},
         {"outputs",
          {{"csv", Optional(finish.csvPath)},
           {"visualization", PathsJson(finish.visualizationPaths)},
           {"bad_frames", PathsJson(finish.badFramePaths)}}},
         {"log", log}});
}

std::string MetricListText() {
    const Metric::CMetricList& metrics = Metric::GetMetricList();
    std::string text;
    for (int i = 0; i < metrics.GetCount(); ++i) {
        char line[1024];
        const Metric::MetricInfo& info = metrics.Info(i);
        std::snprintf(line, sizeof line, "%3d  %-16s  %-32s  %-8s  %d  %s", i, ToUtf8(info.id).c_str(),
                      ToUtf8(info.name).c_str(), ComponentLetters(info.components).c_str(),
                      info.inputCountPlain, ToUtf8(info.unit).c_str());
        text += line;
        text.erase(text.find_last_not_of(' ') + 1);
        text += "\n";
    }
    return text;
}

std::string MetricListJson() {
    const Metric::CMetricList& metrics = Metric::GetMetricList();
    Json list = Json::array();
    for (int i = 0; i < metrics.GetCount(); ++i) {
        const Metric::MetricInfo& info = metrics.Info(i);
        Json components = Json::array();
        for (const int component : info.components)
            components.push_back(ToUtf8(Metric::ComponentName(component)));
        list.push_back({{"index", i},
                        {"id", ToUtf8(info.id)},
                        {"name", ToUtf8(info.name)},
                        {"components", components},
                        {"inputs", info.inputCountPlain},
                        {"inputs_visual", info.inputCountVisual},
                        {"unit", ToUtf8(info.unit)},
                        {"higher_is_better", info.higherIsBetter},
                        {"configurable", info.configurable},
                        {"default_settings", ToUtf8(info.defaultSettings)}});
    }
    return Dump(list);
}
