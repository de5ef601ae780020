#pragma once

#include "report/curve_layer.h"
#include "report/plot_base.h"
#include "report/report_controller_subordinate.h"

#include <QImage>
#include <QWidget>

#include <utility>

namespace Report {

class ReportController;

/// A plot of the values over the frames. The overview shows all frames and the visible range as a band in
/// them; the detail plot shows the visible range. A run of up to three frames has no overview: both plots are
/// detail plots.
///
/// It is drawn into an off-screen picture, once for all changes that came since the last painting. Only the
/// detail plot draws its curves anew when the frame changes.
class CReportGraph : public QWidget, public IReportControllerSubordinate {
    Q_OBJECT

public:
    enum class Kind { Overview, Detail };

    /// `controller` outlives the plot.
    CReportGraph(Kind kind, ReportController& controller, QWidget* parent = nullptr);

    void Update(int visibleFirst, int visibleLast, int current) override;
    void SetGrid(bool on);
    /// Copies the finished picture to the window.
    void Redraw();
    /// The detail plot only; the overview does nothing. `factor` is the copy's size.
    void CopyToClipboard(double factor = 1);
    /// Save what `CopyToClipboard` copies. False if the file couldn't be written.
    bool SavePng(const std::wstring& path) const;
    bool SaveSvg(const std::wstring& path) const;

    /// Whether the file has a value at the frame, and the value.
    std::pair<bool, float> ValueAt(int file, int current) const;

    bool IsOverview() const { return state.isOverview; }
    const PlotState& State() const { return state; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void LayOut();
    void DrawPicture();
    void Grab(int x);
    void DragTo(int x);
    void EndDrag();
    void ShowCursor(QPoint position);
    void ShowPointText(QPoint position, QPoint onScreen);
    void Save(bool asSvg);

    ReportController& controller;
    PlotState state;
    CurveLayer curves;
    QImage picture;  // what the window shows
    bool isPictureStale = true;
    bool areCurvesStale = true;
    bool dragging = false;  // of the detail plot
    BandDrag bandDrag;      // of the overview
};

}  // namespace Report
