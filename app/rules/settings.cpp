#include "app/rules/settings.h"

#include <limits>

#include "app/rules/file_rows.h"
#include "app/rules/metric_choice.h"
#include "video/file_kind.h"

namespace {

/// Takes values from a store. The Saver below has the same operations, so that one list of values serves
/// both.
class Loader {
public:
    explicit Loader(const ISettingsStore& settingsStore) : store(settingsStore) {}

    void Number(const std::string& name, int& value, int absent = 0) const {
        value = store.ReadNumber(name).value_or(absent);
    }
    void Flag(const std::string& name, bool& value, bool absent = false) const {
        value = store.ReadNumber(name).value_or(absent) > 0;
    }
    void Text(const std::string& name, std::wstring& value, const std::wstring& absent = {}) const {
        value = store.ReadText(name).value_or(absent);
    }

private:
    const ISettingsStore& store;
};

class Saver {
public:
    explicit Saver(ISettingsStore& settingsStore) : store(settingsStore) {}

    void Number(const std::string& name, int value, int = 0) { saved &= store.WriteNumber(name, value); }
    void Flag(const std::string& name, bool value, bool = false) { saved &= store.WriteNumber(name, value); }
    void Text(const std::string& name, const std::wstring& value, const std::wstring& = {}) {
        saved &= store.WriteText(name, value);
    }
    bool AllSaved() const { return saved; }

private:
    ISettingsStore& store;
    bool saved = true;
};

template <class Exchange, class State>
void ExchangeChoices(Exchange& exchange, State& state) {
    auto& job = state.job;
    exchange.Number("run_num", state.runNumber);
    exchange.Flag("comp_analysis", job.comparativeAnalysis);
    exchange.Flag("save_bad_frames", job.badFrames.save);
    exchange.Number("bad_frames_num", job.badFrames.count);
    exchange.Number("yuv_table", job.run.yuvTable);
    exchange.Flag("save_csv", job.csv.save);
    exchange.Flag("save_vis_video", job.visualization.save);
    exchange.Number("csv_name_gen", job.csv.nameGeneration);
    exchange.Number("csv_separator", job.csv.separator);
    exchange.Number("fp_separator", job.csv.decimalDelimiter);
    exchange.Flag("csv_unicode", job.csv.unicode);
    exchange.Number("vis_name_gen", job.visualization.nameGeneration);
    exchange.Number("rad", job.badFrames.radius);
}

template <class Exchange, class State>
void ExchangeViews(Exchange& exchange, State& state) {
    auto& job = state.job;
    exchange.Number("draw_pos", job.caption.position);
    exchange.Number("save_frames_type", job.badFrames.frameType);
    exchange.Flag("draw_frame_number", job.caption.drawFrameNumber);
    exchange.Flag("draw_metric_value", job.caption.drawMetricValue, true);
    exchange.Flag("show_report", state.showResults, true);
    exchange.Flag("auto_close_progress", job.autoCloseProgress);
}

template <class Exchange, class State>
void ExchangePaths(Exchange& exchange, State& state, const std::wstring& programDirectory) {
    auto& job = state.job;
    exchange.Text("csv_output_dir", job.csv.outputDir, programDirectory);
    exchange.Text("csv_custom_name", job.csv.customName);
    exchange.Text("vis_output_dir", job.visualization.outputDir, programDirectory);
    exchange.Text("bad_frames_output_dir", job.badFrames.outputDir, programDirectory);
    exchange.Text("wav_path", state.wavPath);
}

template <class Exchange, class State>
void ExchangeMask(Exchange& exchange, State& state) {
    exchange.Flag("use_mask", state.job.maskSlot.useMask);
    exchange.Flag("black_mask", state.job.maskSlot.blackMask);
}

template <class Exchange, class Record>
void ExchangeRawSettings(Exchange& exchange, const std::string& prefix, Record& slot) {
    exchange.Number(prefix + "_width", slot.width);
    exchange.Number(prefix + "_height", slot.height);
    exchange.Number(prefix + "_yuv_type", slot.yuvType);
}

/// The name of a slot's path, and how its other names begin.
struct SlotNames {
    const char* path;
    std::string prefix;
};

SlotNames NamesOf(FileRow row) {
    switch (row) {
        case RowOriginal:
            return {"original", "original"};
        case RowProcessed:
            return {"first_processed", "processed"};
        case RowSecond:
            return {"second_processed", "processed2"};
        default:
            return {"mask_file", "mask"};
    }
}

void LoadScriptSettings(const ISettingsStore& store, const std::string& prefix, FileRecord& slot) {
    const auto filter = store.ReadNumber(prefix + "_plugin");
    if (!filter) return;
    const Loader loader(store);
    slot.filter = *filter;
    loader.Text(prefix + "_parameters", slot.parameters, slot.parameters);
    loader.Flag(prefix + "_only_prefered", slot.onlyPreferred);
    loader.Flag(prefix + "_custom_params", slot.customParameters);
}

void LoadSlot(const ISettingsStore& store, FileRow row, ShellState& state) {
    const Loader loader(store);
    const SlotNames names = NamesOf(row);
    FileRecord& slot = SlotOf(state.job, row);
    std::wstring path;
    loader.Text(names.path, path);
    SetPath(slot, path);
    loader.Flag(names.prefix + "_use_avs", slot.useAvs);
    slot.useAvs = slot.useAvs && state.capabilities.aviSynth;
    if (slot.useAvs) LoadScriptSettings(store, names.prefix, slot);
    if (rkIsRawName(path)) ExchangeRawSettings(loader, names.prefix, slot);
}

void SaveSlot(Saver& saver, FileRow row, const FileRecord& slot) {
    const SlotNames names = NamesOf(row);
    saver.Text(names.path, slot.name);
    saver.Flag(names.prefix + "_use_avs", slot.useAvs);
    if (slot.useAvs) {
        saver.Number(names.prefix + "_plugin", slot.filter);
        // The same once more, for who expects this name; it is never read.
        saver.Flag(names.prefix + "_use_default", slot.onlyPreferred);
        saver.Text(names.prefix + "_parameters", slot.parameters);
        saver.Flag(names.prefix + "_custom_params", slot.customParameters);
        saver.Flag(names.prefix + "_only_prefered", slot.onlyPreferred);
    }
    if (rkIsRawName(slot.name)) ExchangeRawSettings(saver, names.prefix, slot);
}

/// A metric that isn't in the list any more, as of a plug-in that is gone, gives way to the first one.
void LoadMetric(const ISettingsStore& store, const Metric::CMetricList& metrics, MeasurementJob& job) {
    SelectedMetric selected;
    const auto id = store.ReadText("metric");
    const bool found = id && metrics.FindById(*id, selected.metricIndex);
    if (found) {
        std::wstring& settings = job.metricSettings[static_cast<std::size_t>(selected.metricIndex)];
        if (metrics.IsConfigurable(selected.metricIndex))
            settings = store.ReadText("metric_settings").value_or(settings);
        selected.settings = settings;
        selected.component = store.ReadNumber("metric_colorspace").value_or(selected.component);
    }
    job.selection = {selected};
}

void SaveMetric(Saver& saver, const Metric::CMetricList& metrics, const MeasurementJob& job) {
    const SelectedMetric selected = SelectionOf(job);
    saver.Text("metric", metrics.GetId(selected.metricIndex));
    saver.Text("metric_settings", SelectedSettings(job));
    saver.Number("metric_colorspace", selected.component);
}

}  // namespace

void LoadSettings(const ISettingsStore& store, const std::wstring& programDirectory,
                  const Metric::CMetricList& metrics, ShellState& state) {
    const Loader loader(store);
    ExchangeChoices(loader, state);
    if (state.runNumber < std::numeric_limits<int>::max()) ++state.runNumber;
    ExchangeViews(loader, state);
    LoadMetric(store, metrics, state.job);
    ExchangePaths(loader, state, programDirectory);
    for (const FileRow row : kFileRows) {
        if (row == RowMask) ExchangeMask(loader, state);
        LoadSlot(store, row, state);
    }
}

bool SaveSettings(ISettingsStore& store, const Metric::CMetricList& metrics, const ShellState& state) {
    Saver saver(store);
    ExchangeChoices(saver, state);
    SaveMetric(saver, metrics, state.job);
    ExchangeViews(saver, state);
    ExchangePaths(saver, state, {});
    for (const FileRow row : kFileRows) {
        if (row == RowMask) ExchangeMask(saver, state);
        SaveSlot(saver, row, SlotOf(state.job, row));
    }
    return saver.AllSaved();
}
