#pragma once

#include <string>

#include "app/rules/capabilities.h"
#include "catalogue/metric_list.h"
#include "engine/model/measurement_job.h"

enum class RunPhase {
    Editing,
    Measuring,  ///< from the start of a run until it is left
    Viewing,    ///< its results are shown
};

/// Everything that the main dialog edits and shows. The controls hold nothing of their own: a window changes
/// this record when the user acts, and shows it by `MainFormFrom`.
struct ShellState {
    MeasurementJob job;
    Capabilities capabilities;
    bool showResults = true;
    std::wstring wavPath;
    bool playWav = false;  ///< lasts until the program ends
    int runNumber = 0;     ///< starts of the program, this one included
    RunPhase phase = RunPhase::Editing;
};

/// The state before anything is loaded: empty slots, every metric with its default settings, PSNR on Y
/// selected.
ShellState NewShellState(const Capabilities& capabilities,
                         const Metric::CMetricList& metrics = Metric::GetMetricList());
