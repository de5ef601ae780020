#include <algorithm>
#include <charconv>
#include <map>
#include <sstream>

#include "app/rules/bad_frames_form.h"
#include "app/rules/main_form.h"
#include "app/rules/matrix_choice.h"
#include "app/rules/metric_choice.h"
#include "app/rules/output_form.h"
#include "app/rules/readiness.h"
#include "app/rules/run_start.h"
#include "app/rules/script_form.h"
#include "app/rules/settings.h"
#include "app/rules/yuv_form.h"
#include "platform/text.h"
#include "tests/fuzz/metrics_with_plugins.h"
#include "tests/memory_settings_store.h"

namespace {

/// Lines "name=7" for numbers and "name:text" for texts, ended by 0 bytes; a number that is none is a text.
struct InputStore : MemorySettingsStore {
    explicit InputStore(const std::string& bytes) {
        std::istringstream lines(bytes);
        for (std::string line; std::getline(lines, line, '\0');) {
            const std::size_t end = std::min(line.find_first_of("=:"), line.size());
            const std::string name = line.substr(0, end), value = line.substr(std::min(end + 1, line.size()));
            int number = 0;
            const auto [behind, error] = std::from_chars(value.data(), value.data() + value.size(), number);
            if (line[end] == '=' && error == std::errc() && *behind == '\0')
                WriteNumber(name, number);
            else
                WriteText(name, FromUtf8(value));
        }
    }
};

/// All that was written, but for the number of starts, which grows.
struct NotingStore : MemorySettingsStore {
    std::map<std::string, std::wstring> written;

    bool WriteNumber(const std::string& name, int number) override {
        if (name != "run_num") written[name] = std::to_wstring(number);
        return MemorySettingsStore::WriteNumber(name, number);
    }
    bool WriteText(const std::string& name, const std::wstring& text) override {
        written[name] = L"text " + text;
        return MemorySettingsStore::WriteText(name, text);
    }
};

struct NoAnswers : IFileQuestions {
    std::optional<std::wstring> ChooseFile(const std::wstring&) override { return {}; }
    bool EditYuvSettings(FileRecord&) override { return false; }
    bool AskOpenWithAviSynth() override { return false; }
};

template <class List>
bool IsIn(const List& list, int position) {
    return position >= 0 && static_cast<std::size_t>(position) < std::size(list);
}

void ShowSlot(FileRecord slot, const Capabilities& capabilities) {
    const YuvForm yuv = YuvFormFrom(slot, capabilities);
    Require(IsIn(yuv.layouts, yuv.layout) && yuv.width >= 0 && yuv.height >= 0);
    ScriptForm script = ScriptFormFrom(slot, capabilities);
    Require(IsIn(script.filters, script.filter));
    ChooseFilter(script, static_cast<int>(script.filters.size()) - 1);
    StoreForm(yuv, slot);
    StoreForm(script, slot);
    Require(slot.parameters.size() <= kMaxScriptParameters);
}

/// What every dialog shows is one of its choices, and "OK" stores it.
void ShowAll(ShellState& state, const Metric::CMetricList& metrics) {
    MeasurementJob& job = state.job;
    const MainForm main = MainFormFrom(state, metrics);
    Require(main.metric >= 0 && main.metric < metrics.GetCount() && !main.matrix.empty());
    Require(main.component >= -1 && main.component < Metric::kComponentCount);
    for (const FileRow row : kFileRows) ShowSlot(SlotOf(job, row), state.capabilities);

    const OutputForm output = OutputFormFrom(job);
    Require(IsIn(kCsvNamings, output.csvNaming) && IsIn(kCsvTypes, output.csvType) &&
            IsIn(kDecimalDelimiters, output.decimalDelimiter) &&
            IsIn(kVisualizationNamings, output.visualizationNaming) &&
            IsIn(kCaptionPositions, output.captionPosition));
    StoreForm(output, job);
    const BadFramesForm badFrames = BadFramesFormFrom(job.badFrames, job.comparativeAnalysis);
    Require(IsIn(kBadFramesTypeTexts, badFrames.type) && badFrames.number >= 1 &&
            badFrames.number <= kMaxBadFrames && badFrames.radiusSteps >= 0 &&
            badFrames.radiusSteps <= kMaxRadiusSteps);
    StoreForm(badFrames, job.badFrames);
}

}  // namespace

/// Takes the bytes for a store of settings. What is loaded is saved and loaded as the same again; every
/// dialog can show it, and a run can begin with it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Metric::CMetricList& metrics = MetricsWithPlugins();
    const InputStore store(std::string(reinterpret_cast<const char*>(data), size));
    for (const bool hasAll : {true, false}) {
        const Capabilities capabilities = {hasAll, hasAll, hasAll, hasAll, hasAll};
        ShellState state = NewShellState(capabilities, metrics);
        LoadSettings(store, L"/program/", metrics, state);
        NotingStore first, second;
        Require(SaveSettings(first, metrics, state));
        ShellState again = NewShellState(capabilities, metrics);
        LoadSettings(first, L"/program/", metrics, again);
        Require(SaveSettings(second, metrics, again) && second.written == first.written);

        ChooseMetric(state.job, SelectionOf(state.job).metricIndex, metrics);
        MatchBadFramesType(state.job);
        ShowAll(state, metrics);
        NoAnswers answers;
        const RunStart start = PrepareRun(state, answers, metrics);
        Require(start.ready || start.refusal || state.phase == RunPhase::Editing);
        if (!start.ready) continue;
        const int component = SelectionOf(state.job).component;
        Require(!state.job.run.inputFiles.empty() &&
                SupportsComponent(metrics, SelectionOf(state.job).metricIndex, component));
    }
    return 0;
}
