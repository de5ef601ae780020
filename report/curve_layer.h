#pragma once

#include "report/rules/plot_geometry.h"

#include <QImage>
#include <QPainter>
#include <QRect>

#include <map>

namespace Report {

/// The curves of a plot as a picture of their own, transparent where there is none, so that what lies under
/// them can change while they stay. In pixels of the screen; a curve is one logical pixel thick and isn't
/// smoothed.
class CurveLayer {
public:
    /// With `halo`, a white rim around the curves is kept as well, for dark ground.
    void Draw(const std::map<int, Series>& series, const PlotScale& scale, double deviceRatio, bool halo);

    /// Lays the curves over a plot. `painter` works in pixels of the screen. Within `haloArea`, in logical
    /// pixels, their rim is laid under them.
    void LayOver(QPainter& painter, const QRect& haloArea) const;

private:
    double ratio = 1;
    QPoint place;  // on the screen, of the plot's top left corner in the picture
    int rim = 0;   // pixels around the plot: signs and halo stand out over it
    QImage lines;
    QImage rims;  // null without a halo
};

/// Draws the curves as lines, for pictures that aren't made of pixels, with a white rim within `haloArea`.
/// The painter's units are logical pixels.
void DrawCurves(QPainter& painter, const std::map<int, Series>& series, const PlotScale& scale,
                const QRect& haloArea);

}  // namespace Report
