#pragma once

#include <limits>
#include <vector>

#include "report/rules/plot_geometry.h"

namespace Report {

/// The corners of a curve from the plot's top left corner on, from left to right, as `CurveX` and `CurveY`
/// place them. It ends before the first frame without a value, and is empty if the range begins without one.
/// A range of one frame is a line across the plot.
///
/// Of the corners in one pixel column only the first, the lowest, the highest and the last are kept, in the
/// order of their frames: the line through these paints what the line through all would, whatever the number
/// of frames.
std::vector<Point> CurveOf(const Series& series, const PlotScale& scale);

/// The pixels of a column that a curve paints, both ends included. None if the first is above the last.
struct ColumnRun {
    int top = std::numeric_limits<int>::max();
    int bottom = std::numeric_limits<int>::min();

    bool IsEmpty() const { return top > bottom; }
    void Take(int y) {
        if (y < top) top = y;
        if (y > bottom) bottom = y;
    }
    friend bool operator==(const ColumnRun&, const ColumnRun&) = default;
};

/// What lines of one pixel through `corners` paint, as one run for each of the columns 0 to `width`; all
/// corners stand in these. As lines go from left to right and each begins where the one before it ends, a
/// column has no gaps.
///
/// The lines are those of Qt's painter without smoothing, in its fixed-point numbers: vertical ones are
/// cheap, and single lines can be laid over them with no pixel beside.
std::vector<ColumnRun> ColumnRunsOf(const std::vector<Point>& corners, int width);

/// The places of the marks that tell a curve from the others: every 96 logical pixels, shifted by the file,
/// in the middle of the curve's run. `pixelsPerUnit` is the number of pixels in a logical one. The original's
/// curve has none.
std::vector<Point> MarksOn(const std::vector<ColumnRun>& runs, int file, double pixelsPerUnit);

}  // namespace Report
