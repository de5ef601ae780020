#pragma once

#include <functional>
#include <vector>

#include "report/report_controller_subordinate.h"
#include "report/rules/frame_range.h"
#include "report/rules/report_data.h"

namespace Report {

/// Owns the visible range and the current frame of a viewer, turns what the user does into changes of them,
/// and tells all views. Belongs to the dialog; GUI thread only.
class ReportController {
public:
    /// `showNumbers` puts the current frame and its values into the dialog, before the views follow; `redraw`
    /// brings the plots' pictures to the screen.
    ReportController(ReportData data, std::function<void()> showNumbers, std::function<void()> redraw);

    const ReportData& Data() const { return data; }
    const FrameRange& Range() const { return range; }

    /// The plots belong to the dialog; the overview comes first.
    void AddView(IReportControllerSubordinate& view) { views.push_back(&view); }
    /// The window with the frames while it is open, otherwise null.
    void SetFrameView(IReportControllerSubordinate* view) { frameView = view; }

    /// Makes `frame` the current one: within the visible range, or with the visible range moved around it.
    void SetCurrent(int frame, bool recentre);
    /// Makes the visible range wider by so many frames, or narrower.
    void Widen(int frames);
    /// Nothing changes without such a frame.
    void GoToNextBadFrame();
    void GoToPreviousBadFrame();

    void NotifyViews();
    /// What every command ends with: the plots come to the screen with the next turn of the event loop.
    void Redraw() { redraw(); }

private:
    ReportData data;
    FrameRange range;
    std::function<void()> showNumbers;
    std::function<void()> redraw;
    std::vector<IReportControllerSubordinate*> views;
    IReportControllerSubordinate* frameView = nullptr;
};

}  // namespace Report
