#pragma once

#include "report/plot_base.h"

#include <QByteArray>
#include <QImage>

namespace Report {

/// A plot as people paste it: without the cursor, with the program's name and a legend that names the files.

/// `factor` pixels a logical one.
QImage PlotCopy(const ReportData& data, const PlotState& state, double factor);

/// As the bytes of an SVG file.
QByteArray PlotSvg(const ReportData& data, const PlotState& state);

}  // namespace Report
