#pragma once

#include "report/rules/plot_geometry.h"
#include "report/rules/report_data.h"

#include <QFont>
#include <QPainter>
#include <QRect>
#include <QSize>

#include <optional>

namespace Report {

/// A plot at one moment.
struct PlotState {
    QSize size;  // of the window, in logical pixels
    QFont font;
    int charWidth = 0;
    int textHeight = 0;
    PlotScale scale;
    bool isOverview = false;
    bool showGrid = true;
    std::optional<int> cursor;  // the frame that has the cursor
    int bandFirst = 0;          // of the overview
    int bandLast = 0;

    /// The part of the plot rectangle that shows the band, its last column included. Empty in the detail
    /// plot.
    QRect Band() const;
};

/// A state for a window of this size and font, with nothing in it yet.
PlotState EmptyPlot(const QSize& size, const QFont& font);

/// Draws all of a plot that lies under its curves: ground, band, grid, labels, marks of bad frames, titles;
/// of a plot without curves, that it has none. The painter's units are the window's logical pixels.
void DrawPlotBase(QPainter& painter, const ReportData& data, const PlotState& state);

}  // namespace Report
