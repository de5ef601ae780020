#include "app/rules/main_controls.h"

#include <algorithm>

#include "app/rules/metric_choice.h"
#include "app/rules/readiness.h"
#include "app/rules/reasons.h"

namespace {

constexpr Control kLockedByRun[] = {
    Control::OriginalBrowse,      Control::ProcessedBrowse,
    Control::SecondBrowse,        Control::ShowResults,
    Control::ComparativeAnalysis, Control::SaveCsv,
    Control::SaveVisualization,   Control::SaveBadFrames,
    Control::CsvAdvanced,         Control::BadFramesAdvanced,
    Control::MoreOptions,         Control::MetricList,
    Control::ComponentY,          Control::ComponentU,
    Control::ComponentV,          Control::ComponentL,
    Control::ComponentR,          Control::ComponentG,
    Control::ComponentB,          Control::Exit,
    Control::MatrixAdvanced,
};

std::wstring RowReason(FileRow row, RowPart part, const ShellState& state) {
    if (!IsRowOpen(state.job, row))
        return Needs(row == RowSecond ? L"Comparative analysis" : L"Use mask file:");
    const FileRecord& slot = SlotOf(state.job, row);
    if (part == RowPart::UseAvs && !state.capabilities.aviSynth) return kNeedsAviSynth;
    if (part == RowPart::Advanced && !slot.useAvs) return Needs(L"Open with AVISynth");
    if (part == RowPart::Advanced && slot.name.empty()) return L"Needs a file";
    return {};
}

/// Such as "SSIM (fast) measures Y only".
std::wstring ComponentReason(int component, const MeasurementJob& job, const Metric::CMetricList& metrics) {
    const int index = SelectionOf(job).metricIndex;
    if (SupportsComponent(metrics, index, component)) return {};

    std::wstring supported;
    for (const int other : metrics.GetComponents(index)) {
        if (other < 0 || other >= Metric::kComponentCount) continue;
        supported += supported.empty() ? L"" : L", ";
        supported += L"YUVLRGB"[other];
    }
    return metrics.GetName(index) +
           (supported.empty() ? L" measures no color component" : L" measures " + supported + L" only");
}

std::wstring BadFramesReason(const MeasurementJob& job) {
    if (HasVideoPath(job)) return {};
    const bool empty = std::all_of(job.fileSlots.begin(), job.fileSlots.end(),
                                   [](const FileRecord& slot) { return slot.name.empty(); });
    return empty ? L"Needs a video file" : L"Needs a video file: all files are images";
}

std::wstring ProcessReason(const MeasurementJob& job, const Metric::CMetricList& metrics) {
    if (IsReady(job, metrics)) return {};
    switch (InputsNeeded(job, metrics)) {
        case 1:
            return job.comparativeAnalysis ? L"Needs both processed files"
                                           : L"Needs the original or the processed file";
        case 2:
            return job.comparativeAnalysis ? L"Needs the original and both processed files"
                                           : L"Needs the original and the processed file";
        default:
            return metrics.GetName(SelectionOf(job).metricIndex) + L" takes neither one file nor two";
    }
}

}  // namespace

bool IsLockedByRun(Control control) {
    return std::find(std::begin(kLockedByRun), std::end(kLockedByRun), control) != std::end(kLockedByRun);
}

std::wstring WhyDisabled(Control control, const ShellState& state, const Metric::CMetricList& metrics) {
    if (state.phase != RunPhase::Editing && IsLockedByRun(control)) return L"A measurement is running";

    const MeasurementJob& job = state.job;
    const int number = static_cast<int>(control);
    if (control <= Control::MaskPreview)
        return RowReason(static_cast<FileRow>(number / kRowParts), static_cast<RowPart>(number % kRowParts),
                         state);
    if (control >= Control::ComponentY && control <= Control::ComponentB)
        return ComponentReason(number - static_cast<int>(Control::ComponentY), job, metrics);

    switch (control) {
        case Control::BlackMask:
            return job.maskSlot.useMask ? L"" : Needs(L"Use mask file:");
        case Control::MetricSettings: {
            const int index = SelectionOf(job).metricIndex;
            return metrics.IsConfigurable(index) ? L"" : metrics.GetName(index) + L" has no settings";
        }
        case Control::MetricInfo: {
            const int index = SelectionOf(job).metricIndex;
            return !metrics.GetInfoUrl(index).empty() ? L"" : metrics.GetName(index) + L" has no page";
        }
        case Control::CsvAdvanced:
            return job.csv.save || job.visualization.save
                       ? L""
                       : Needs(L"Save CSV file") + L" or \"Save metric visualization video / image\"";
        case Control::SaveBadFrames:
            return BadFramesReason(job);
        case Control::BadFramesAdvanced:
            return job.badFrames.save ? BadFramesReason(job) : Needs(L"Save \"bad frames\"");
        case Control::Process:
            return ProcessReason(job, metrics);
        default:
            return {};
    }
}
