#pragma once

#include <chrono>
#include <string>

#include "cli/terminal.h"
#include "engine/model/progress.h"

/// The line under the log: a bar with percent, frames a second and the time left, as of the frame just
/// measured. Drawn ten times a second at most, and after the last frame.
class ProgressBar : public IProgress {
public:
    /// The terminal outlives the bar. `quiet` leaves out the line that announces the run.
    ProgressBar(Terminal& terminal, bool quiet);
    void Start(const MetricSelection& selection, const std::vector<std::wstring>& names) override;
    void SetMaximum(int frames) override { length = frames; }
    void SetPosition(int frame) override;
    void Finish() override { terminal.HideBar(); }

private:
    using Clock = std::chrono::steady_clock;

    Terminal& terminal;
    bool quiet;
    int length = 0;
    Clock::time_point start;
    Clock::time_point drawn;
};

/// The bar's text after `done` of `length` frames in `seconds`, such as "[#####.....]  50 %  123.4 fps  0:12
/// left".
std::string ProgressText(int done, int length, double seconds);
