#include "cli/job.h"

#include <algorithm>

#include "catalogue/metric_list.h"
#include "cli/codec_option.h"
#include "cli/script_options.h"
#include "platform/text.h"
#include "video/color_space.h"
#include "video/file_kind.h"
#include "video/raw_layout.h"

namespace {

using Metric::CMetricList;

std::string OptionName(FileRole role) {
    return std::string("--") + kRoleNames[role];
}

std::string Quoted(const std::wstring& text) {
    return "\"" + ToUtf8(text) + "\"";
}

/// A file is raw by its name, or because a size or layout was given for this very file.
bool IsRaw(const FileOptions& file) {
    return file.size || file.layout || rkIsRawName(file.path);
}

PictureSize RawSize(const Options& options, FileRole role) {
    const FileOptions& file = options.files[role];
    if (file.size) return *file.size;
    if (options.size) return *options.size;
    throw UsageError("--size is missing: the raw file " + Quoted(file.path) +
                     " takes WxH in pixels, such as 1920x1080");
}

/// Without a layout, ".yuv" means the usual 4:2:0; other raw names say nothing that could be relied on.
int RawLayout(const Options& options, FileRole role) {
    const FileOptions& file = options.files[role];
    if (file.layout) return *file.layout;
    if (options.layout) return *options.layout;
    if (EndsWithNoCase(file.path, L"yuv")) return IYUV;
    throw UsageError("--layout is missing: the raw file " + Quoted(file.path) +
                     " takes a layout's name, such as P010");
}

/// A size or layout for raw files that no file takes would go unnoticed.
void CheckRawOptionsAreUsed(const Options& options) {
    if (!options.size && !options.layout) return;
    for (const FileOptions& file : options.files) {
        if (!file.path.empty() && IsRaw(file)) return;
    }
    throw UsageError(
        std::string(options.size ? "--size" : "--layout") +
        " takes effect on raw files, named .yuv, .yuv10, .rgb or with a 6 at the end; there is none, and "
        "--original-size and the like make any file raw");
}

/// What is said for a file needs the file.
void CheckIsAlone(const FileOptions& file, FileRole role) {
    const char* option = file.size                ? "-size"
                         : file.layout            ? "-layout"
                         : file.script.filter     ? "-avs-filter"
                         : file.script.parameters ? "-avs-parameters"
                         : file.script.use        ? "-avs"
                         : file.script.IsGiven()  ? "-only-preferred"
                                                  : nullptr;
    if (option != nullptr) throw UsageError(OptionName(role) + option + " needs " + OptionName(role));
}

void SetRaw(const Options& options, FileRole role, FileRecord& record) {
    const PictureSize size = RawSize(options, role);
    record.width = size.width;
    record.height = size.height;
    record.yuvType = RawLayout(options, role);
    if (RawFrameBytes(record.yuvType, record.width, record.height) == 0) {
        throw UsageError((options.files[role].size ? OptionName(role) + "-size" : "--size") +
                         " takes pictures of less than 2 GiB; it got " + std::to_string(size.width) + "x" +
                         std::to_string(size.height));
    }
}

FileRecord RecordOf(const Options& options, FileRole role) {
    const FileOptions& file = options.files[role];
    FileRecord record;
    record.name = record.sourceName = file.path;
    if (file.path.empty()) {
        CheckIsAlone(file, role);
        return record;
    }
    if (IsRaw(file)) SetRaw(options, role, record);
    SetScript(options, role, record);
    return record;
}

/// The selected metric's index and component.
SelectedMetric Find(const MetricOption& option, const CMetricList& metrics) {
    SelectedMetric selected;
    if (!metrics.FindById(option.id, selected.metricIndex)) {
        const char* const hint = option.id.ends_with(L"_cuda")
                                     ? ", which has those for a GPU only with one or with --gpu-emulation"
                                     : "";
        throw UsageError(std::string("--metric takes an id of --list-metrics") + hint + "; it got " +
                         Quoted(option.id));
    }
    const std::vector<int>& components = metrics.GetComponents(selected.metricIndex);
    if (components.empty())
        throw UsageError("--metric " + Quoted(option.id) + " has no component to measure");
    selected.component = option.component.value_or(components.front());
    if (std::find(components.begin(), components.end(), selected.component) == components.end()) {
        std::string names;
        for (const int component : components)
            names += std::string(names.empty() ? "" : ", ") + "YUVLRGB"[component];
        throw UsageError("--metric " + Quoted(option.id) + " takes the components " + names);
    }
    return selected;
}

void SelectMetrics(const Options& options, const CMetricList& metrics, MeasurementJob& job) {
    for (int i = 0; i < metrics.GetCount(); ++i) job.metricSettings.push_back(metrics.GetDefaultSettings(i));
    std::vector<bool> configured(job.metricSettings.size());

    std::vector<MetricOption> wanted = options.metrics;
    if (wanted.empty()) wanted.push_back({L"psnr", Metric::ComponentY, {}});
    for (const MetricOption& option : wanted) {
        const SelectedMetric selected = Find(option, metrics);
        const auto index = static_cast<std::size_t>(selected.metricIndex);
        job.selection.insert(selected);
        if (!option.settings) continue;
        if (!metrics.IsConfigurable(selected.metricIndex)) {
            throw UsageError("--metric " + Quoted(option.id) + " takes no settings");
        }
        if (configured[index] && job.metricSettings[index] != *option.settings) {
            throw UsageError("--metric " + Quoted(option.id) +
                             " takes one settings string a run; it got two");
        }
        configured[index] = true;
        job.metricSettings[index] = *option.settings;
    }
}

/// As many files as the chosen metrics compare.
void CheckInputs(const Options& options, const CMetricList& metrics, const MetricSelection& selection) {
    if (options.files[RoleOriginal].path.empty())
        throw UsageError("--original is missing: it takes the original video");
    const bool compared =
        !options.files[RoleProcessed].path.empty() || !options.files[RoleProcessed2].path.empty();
    const bool visualizes = !options.visualization.directory.empty();
    for (const SelectedMetric& selected : selection) {
        if (compared || metrics.GetInputCount(selected.metricIndex, visualizes) < 2) continue;
        throw UsageError("--processed is missing: " + Quoted(metrics.GetId(selected.metricIndex)) +
                         " takes a video to compare with the original");
    }
}

CsvSettings CsvOf(const CsvOptions& options) {
    CsvSettings settings;
    settings.save = !options.directory.empty();
    settings.outputDir = options.directory;
    settings.nameGeneration = options.naming;
    settings.customName = options.name;
    settings.separator = options.semicolon ? 2 : 1;
    settings.decimalDelimiter = options.decimalComma ? 1 : 0;
    settings.unicode = options.unicode;
    return settings;
}

VisualizationSettings VisualizationOf(const VisualizationOptions& options) {
    VisualizationSettings settings;
    settings.save = !options.directory.empty();
    settings.outputDir = options.directory;
    settings.nameGeneration = options.naming;
    if (!options.codec.empty()) settings.compressor = CompressorOf(options.codec);
    return settings;
}

CaptionSettings CaptionOf(const VisualizationOptions& options) {
    CaptionSettings settings;
    settings.position = options.captionAtBottom ? 1 : 0;
    settings.drawFrameNumber = options.captionFrame;
    settings.drawMetricValue = !options.noCaptionValue;
    return settings;
}

/// A choice of bad frames that the given files don't allow would come out empty.
void CheckBadFrames(const Options& options) {
    const bool hasFirst = !options.files[RoleProcessed].path.empty();
    const bool hasSecond = !options.files[RoleProcessed2].path.empty();
    if (hasSecond && !hasFirst) throw UsageError("--bad-frames with --processed2 needs --processed");
    if (options.badFrames.type != BadOriginalProcessed && !hasSecond) {
        throw UsageError("--bad-frames-type takes 1 to 3 with two processed videos; --processed2 is missing");
    }
}

BadFramesSettings BadFramesOf(const Options& options) {
    BadFramesSettings settings;
    settings.save = !options.badFrames.directory.empty();
    if (settings.save) CheckBadFrames(options);
    settings.outputDir = options.badFrames.directory;
    settings.frameType = options.badFrames.type;
    settings.count = options.badFrames.count;
    settings.radius = options.badFrames.radius;
    return settings;
}

}  // namespace

void FillJob(const Options& options, MeasurementJob& job) {
    const CMetricList& metrics = Metric::GetMetricList();
    SelectMetrics(options, metrics, job);
    CheckInputs(options, metrics, job.selection);
    CheckRawOptionsAreUsed(options);

    for (const FileRole role : {RoleOriginal, RoleProcessed, RoleProcessed2}) {
        job.fileSlots[role] = RecordOf(options, role);
        if (!job.fileSlots[role].name.empty()) job.run.inputFiles.push_back(job.fileSlots[role]);
    }
    job.run.yuvTable = options.matrix;

    static_cast<FileRecord&>(job.maskSlot) = RecordOf(options, RoleMask);
    job.maskSlot.useMask = !job.maskSlot.name.empty();
    job.maskSlot.blackMask = options.blackMask;
    if (options.blackMask && !job.maskSlot.useMask) throw UsageError("--black-mask needs --mask");
    job.run.useMask = job.maskSlot.useMask;
    job.run.blackMask = job.maskSlot.blackMask;
    job.run.maskFile = job.maskSlot;

    std::vector<FileRecord> records = job.run.inputFiles;
    if (job.run.useMask) records.push_back(job.run.maskFile);
    CheckScriptOptionsAreUsed(options, records);

    job.csv = CsvOf(options.csv);
    job.visualization = VisualizationOf(options.visualization);
    job.caption = CaptionOf(options.visualization);
    job.badFrames = BadFramesOf(options);
}
