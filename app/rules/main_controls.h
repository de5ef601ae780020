#pragma once

#include <string>

#include "app/rules/file_rows.h"
#include "app/rules/shell_state.h"

/// Every control of the main dialog that can be used, in reading order. Those of a file row stand together.
enum class Control {
    OriginalPath,
    OriginalBrowse,
    OriginalUseAvs,
    OriginalAdvanced,
    OriginalPreview,
    ProcessedPath,
    ProcessedBrowse,
    ProcessedUseAvs,
    ProcessedAdvanced,
    ProcessedPreview,
    SecondPath,
    SecondBrowse,
    SecondUseAvs,
    SecondAdvanced,
    SecondPreview,
    MaskPath,
    MaskBrowse,
    MaskUseAvs,
    MaskAdvanced,
    MaskPreview,
    ComparativeAnalysis,
    UseMask,
    BlackMask,
    MatrixAdvanced,  ///< the general "Advanced" of the file step
    MetricList,
    MetricSettings,
    MetricInfo,
    ComponentY,  ///< the radio buttons in the order of the components' numbers
    ComponentU,
    ComponentV,
    ComponentL,
    ComponentR,
    ComponentG,
    ComponentB,
    SaveCsv,
    SaveVisualization,
    CsvAdvanced,  ///< serves CSV and visualization
    SaveBadFrames,
    BadFramesAdvanced,
    MoreOptions,
    ShowResults,
    Process,
    Website,
    Feedback,
    Help,
    Exit,
};
constexpr int kControlCount = static_cast<int>(Control::Exit) + 1;

enum class RowPart { Path, Browse, UseAvs, Advanced, Preview };
constexpr int kRowParts = 5;

constexpr Control RowControl(FileRow row, RowPart part) {
    return static_cast<Control>(row * kRowParts + static_cast<int>(part));
}

constexpr Control ComponentControl(int component) {
    return static_cast<Control>(static_cast<int>(Control::ComponentY) + component);
}

/// Whether the control is off from the start of a run until its results are left, whatever else would turn it
/// on.
bool IsLockedByRun(Control control);

/// Why a control can't be used now, for its tooltip; empty for one that can.
std::wstring WhyDisabled(Control control, const ShellState& state,
                         const Metric::CMetricList& metrics = Metric::GetMetricList());
