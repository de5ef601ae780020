#pragma once

#include "report/rules/report_series.h"

namespace Report {

struct Point {
    int x = 0;
    int y = 0;
    friend bool operator==(const Point&, const Point&) = default;
};

/// The plot rectangle in a window, in its pixels. A window that is too small for it has one without extent.
struct PlotGeometry {
    int left = 0;
    int bottom = 0;
    int width = 0;
    int height = 0;

    /// For a window of this size and a font of this height and average width.
    static PlotGeometry In(int windowWidth, int windowHeight, int charWidth, int textHeight);

    int Right() const { return left + width; }
    int Top() const { return bottom - height; }
};

/// Where frames and values stand in a plot.
struct PlotScale {
    PlotGeometry plot;
    int rangeFirst = 0;
    int rangeLast = 0;
    ValueRange values;

    /// Of the axes and what is marked on them. A range of one frame has it at the left end.
    int FrameX(int frame) const;
    int ValueY(float value) const;
    /// Of the curves: from the plot's top left corner on, within the plot.
    int CurveX(int frame) const;
    int CurveY(float value) const;

    /// The frame under the pointer. It may lie outside the range.
    int FrameAt(int x) const;
    bool HasX(int x) const { return x >= plot.left && x <= plot.Right(); }

    /// Pixels from frame to frame.
    float FrameStep() const;
};

/// The visible range as a band in the overview, which is dragged by the point that it was grabbed at.
class BandDrag {
public:
    /// Grabs the band from `bandFirst` to `bandLast` at `x`. False beside it; a thin band is grabbed beside
    /// it as well.
    bool Start(const PlotScale& scale, int bandFirst, int bandLast, int x);
    bool IsUnderWay() const { return underWay; }
    void End() { underWay = false; }

    /// Where the middle of the band is with the pointer at `x`.
    int CentreAt(const PlotScale& scale, int bandFirst, int bandLast, int x) const;

    static bool IsOnBand(const PlotScale& scale, int bandFirst, int bandLast, int x);

private:
    bool underWay = false;
    int offset = 0;  // of the grabbed point in the band
};

}  // namespace Report
