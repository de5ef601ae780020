#include "cli/report.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "catalogue/metric_list.h"
#include "cli/json_text.h"
#include "output/series_statistics.h"
#include "platform/program_version.h"
#include "platform/text.h"

namespace {

std::string NineDigits(double value) {
    if (std::isnan(value)) return "nan";  // the library shows its sign, which says nothing
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", value);
    return text;
}

/// Without a frame a metric's answer for the sequence says nothing.
bool HasAverage(const CResultsStore& store, int id, float& average) {
    int firstFrame = 0;
    return store.GetAverage(id, average) && store.GetFirstFrame(id, firstFrame);
}

// -- Members of a JSON object

void Write(JsonText& json, const char* key, std::string_view value) {
    json.Key(key);
    json.String(value);
}

void Write(JsonText& json, const char* key, const std::wstring& value) {
    Write(json, key, ToUtf8(value));
}

void Write(JsonText& json, const char* key, const char* value) {
    Write(json, key, std::string_view(value));
}

void Write(JsonText& json, const char* key, int value) {
    json.Key(key);
    json.Integer(value);
}

void Write(JsonText& json, const char* key, bool value) {
    json.Key(key);
    json.Boolean(value);
}

void Write(JsonText& json, const char* key, double value) {
    json.Key(key);
    json.Number(value);
}

template <class Items, class WriteItem>
void WriteArray(JsonText& json, const char* key, const Items& items, const WriteItem& writeItem) {
    json.Key(key);
    json.BeginArray();
    for (const auto& item : items) writeItem(item);
    json.EndArray();
}

void WriteTexts(JsonText& json, const char* key, const std::vector<std::wstring>& texts) {
    WriteArray(json, key, texts, [&](const std::wstring& text) { json.String(ToUtf8(text)); });
}

void WriteNull(JsonText& json, const char* key) {
    json.Key(key);
    json.Null();
}

// -- The parts of a report

void WriteStatistics(JsonText& json, const std::vector<FrameValue>& series) {
    const SeriesStatistics s = StatisticsOf(series);
    json.Key("statistics");
    json.BeginObject();
    for (const auto& [key, value] : {std::pair("min", s.min), std::pair("max", s.max),
                                     std::pair("mean", s.mean), std::pair("stddev", s.stddev),
                                     std::pair("p5", s.p5), std::pair("p50", s.p50), std::pair("p95", s.p95)})
        Write(json, key, value);
    json.EndObject();
}

void WriteResult(JsonText& json, const CResultsStore& store, int id) {
    const Metric::CMetricList& metrics = Metric::GetMetricList();
    ResultRecord record;
    store.GetResultRecord(id, record);
    float average = 0;
    const bool hasAverage = HasAverage(store, id, average);
    const std::vector<FrameValue> series = store.GetSeries(id);

    json.BeginObject();
    Write(json, "id", metrics.GetId(record.metricIndex));
    Write(json, "name", metrics.GetName(record.metricIndex));
    Write(json, "unit", metrics.GetUnit(record.metricIndex));
    Write(json, "component", std::wstring(Metric::ComponentName(record.component)));
    Write(json, "settings", record.settings);
    Write(json, "result", record.name);
    Write(json, "higher_is_better", metrics.IsHigherBetter(record.metricIndex));
    WriteArray(json, "files", record.files, [&](const FileRecord& file) { json.String(ToUtf8(file.name)); });
    if (hasAverage)
        Write(json, "average", double{average});
    else
        WriteNull(json, "average");
    Write(json, "first_frame", series.empty() ? 0 : series.front().frame);
    WriteArray(json, "values", series, [&](const FrameValue& entry) { json.Number(entry.value); });
    WriteStatistics(json, series);
    json.EndObject();
}

void WriteInput(JsonText& json, const RunParameters& run, const OpenedInput& input) {
    const bool isMask = input.file < 0;
    const FileRecord& record = isMask ? run.maskFile : run.inputFiles[static_cast<std::size_t>(input.file)];
    json.BeginObject();
    Write(json, "file", record.name);
    Write(json, "role", isMask ? "mask" : input.file == 0 ? "original" : "processed");
    Write(json, "width", run.width);
    Write(json, "height", run.height);
    Write(json, "length", input.frameCount);
    Write(json, "through_script", record.useAvs);
    Write(json, "description", input.description);
    json.EndObject();
}

void WriteOutputs(JsonText& json, const FinishRecord& finish) {
    json.Key("outputs");
    json.BeginObject();
    if (finish.csvPath.empty())
        WriteNull(json, "csv");
    else
        Write(json, "csv", finish.csvPath);
    WriteTexts(json, "visualization", finish.visualizationPaths);
    WriteTexts(json, "bad_frames", finish.badFramePaths);
    json.EndObject();
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
    const RunParameters& run = report.run;
    const CResultsStore& store = *finish.results;
    JsonText json;
    json.BeginObject();
    Write(json, "program", "Tolvane");
    Write(json, "version", ProgramVersion());
    Write(json, "width", run.width);
    Write(json, "height", run.height);
    Write(json, "length", run.length);
    Write(json, "matrix", run.yuvTable == 0 ? "REC.601" : "PC.601");
    // What the run measured, as far as it opened: all of one size.
    WriteArray(json, "inputs", run.openedInputs,
               [&](const OpenedInput& input) { WriteInput(json, run, input); });
    if (run.maskOpened)
        Write(json, "masked_pixels", run.blackMask ? "black" : "bright");
    else
        WriteNull(json, "masked_pixels");
    json.Key("outcome");
    json.BeginObject();
    Write(json, "measurement", finish.outcome->measurement);
    Write(json, "visualization", finish.outcome->visualization);
    json.EndObject();
    WriteArray(json, "results", store.GetResultIds(), [&](int id) { WriteResult(json, store, id); });
    if (finish.badFrames)
        WriteArray(json, "bad_frames", *finish.badFrames, [&](int frame) { json.Integer(frame); });
    else
        WriteNull(json, "bad_frames");
    WriteOutputs(json, finish);
    WriteTexts(json, "log", report.logLines);
    json.EndObject();
    return json.Take();
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
    JsonText json;
    json.BeginArray();
    for (int i = 0; i < metrics.GetCount(); ++i) {
        const Metric::MetricInfo& info = metrics.Info(i);
        json.BeginObject();
        Write(json, "index", i);
        Write(json, "id", info.id);
        Write(json, "name", info.name);
        WriteArray(json, "components", info.components,
                   [&](int component) { json.String(ToUtf8(Metric::ComponentName(component))); });
        Write(json, "inputs", info.inputCountPlain);
        Write(json, "inputs_visual", info.inputCountVisual);
        Write(json, "unit", info.unit);
        Write(json, "higher_is_better", info.higherIsBetter);
        Write(json, "configurable", info.configurable);
        Write(json, "default_settings", info.defaultSettings);
        json.EndObject();
    }
    json.EndArray();
    return json.Take();
}
