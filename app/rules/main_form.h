#pragma once

#include <array>
#include <string>

#include "app/rules/main_controls.h"

/// What the main dialog shows, read from the state. A window copies it to its controls after every change,
/// without letting them report that as the user's doing.
struct MainForm {
    struct Row {
        std::wstring path;
        bool useAvs = false;
    };
    std::array<Row, kFileRows.size()> rows;  ///< by FileRow
    bool comparativeAnalysis = false;
    bool useMask = false;
    bool blackMask = false;
    std::wstring matrix;  ///< names the present RGB/YUV matrix

    int metric = 0;                      ///< index in the metric list
    int component = -1;                  ///< the checked radio button; -1 for none
    bool metricSettingsVisible = false;  ///< the text "Metric settings" with the string below
    std::wstring metricSettings;

    bool saveCsv = false;
    bool saveVisualization = false;
    bool saveBadFrames = false;
    bool showResults = false;

    bool isReady = false;
    std::wstring status;
    std::wstring processCaption;  ///< "Process", during a run "Stop"

    std::array<std::wstring, kControlCount> whyDisabled;  ///< by Control; empty: it can be used
    bool IsEnabled(Control control) const { return WhyDisabled(control).empty(); }
    const std::wstring& WhyDisabled(Control control) const {
        return whyDisabled[static_cast<std::size_t>(control)];
    }
};

MainForm MainFormFrom(const ShellState& state, const Metric::CMetricList& metrics = Metric::GetMetricList());
