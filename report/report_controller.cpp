#include "report/report_controller.h"

#include <utility>

#include "report/report_frame.h"
#include "report/report_graph.h"

namespace Report {

ReportController::ReportController(ReportData reportData, std::function<void()> show)
    : data(std::move(reportData)), range(data.firstFrame, data.lastFrame), showNumbers(std::move(show)) {}

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

void ReportController::SetGrid(bool on) {
    for (CReportGraph* view : views) view->SetGrid(on);
}

void ReportController::NotifyViews() {
    showNumbers();
    for (CReportGraph* view : views) view->Update(range.VisibleFirst(), range.VisibleLast(), range.Current());
    if (frameView) frameView->Update(range.VisibleFirst(), range.VisibleLast(), range.Current());
}

void ReportController::Redraw() {
    for (CReportGraph* view : views) view->Redraw();
}

}  // namespace Report
