#include "report/report_controller.h"

#include <utility>

namespace Report {

ReportController::ReportController(ReportData reportData, std::function<void()> show,
                                   std::function<void()> redrawPlots)
    : data(std::move(reportData)),
      range(data.firstFrame, data.lastFrame),
      showNumbers(std::move(show)),
      redraw(std::move(redrawPlots)) {}

void ReportController::SetCurrent(int frame, bool recentre) {
    if (recentre)
        range.Recentre(frame);
    else
        range.SetCurrent(frame);
    NotifyViews();
}

void ReportController::Widen(int frames) {
    range.SetWidth(range.Width() + frames);
    NotifyViews();
}

void ReportController::GoToNextBadFrame() {
    if (!data.badFrames) return;
    if (const auto frame = NextFrame(*data.badFrames, range.Current())) SetCurrent(*frame, true);
}

void ReportController::GoToPreviousBadFrame() {
    if (!data.badFrames) return;
    if (const auto frame = PreviousFrame(*data.badFrames, range.Current())) SetCurrent(*frame, true);
}

void ReportController::NotifyViews() {
    showNumbers();
    const auto update = [this](IReportControllerSubordinate& view) {
        view.Update(range.VisibleFirst(), range.VisibleLast(), range.Current());
    };
    for (IReportControllerSubordinate* view : views) update(*view);
    if (frameView) update(*frameView);
}

}  // namespace Report
