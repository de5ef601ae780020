#include "report/curve_layer.h"

#include "report/curve_sign.h"
#include "report/plot_colors.h"
#include "report/rules/curve.h"

#include <QPolygon>

#include <algorithm>
#include <cmath>

namespace Report {

namespace {

constexpr int kSignReach = 5;  // logical pixels from a curve to the end of its sign's halo

int OnScreen(int logical, double ratio) {
    return static_cast<int>(std::lround(logical * ratio));
}

PlotScale ScreenScale(const PlotScale& scale, double ratio) {
    PlotScale onScreen = scale;
    onScreen.plot = {0, OnScreen(scale.plot.height, ratio), OnScreen(scale.plot.width, ratio),
                     OnScreen(scale.plot.height, ratio)};
    return onScreen;
}

/// Draws one curve with its signs, wider by `margin` pixels on each side.
void DrawRuns(QPainter& painter, const std::vector<ColumnRun>& runs, int file, const QColor& color, int pen,
              int margin, double unit) {
    for (std::size_t x = 0; x < runs.size(); ++x) {
        if (runs[x].IsEmpty()) continue;
        const int height = runs[x].bottom - runs[x].top + pen;
        painter.fillRect(static_cast<int>(x) - margin, runs[x].top - margin, pen + 2 * margin,
                         height + 2 * margin, color);
    }
    painter.setPen(QPen(color, pen + 2 * margin, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    const double middle = (pen - 1) / 2.0;
    for (const Point& mark : MarksOn(runs, file, unit))
        DrawCurveSign(painter, file, QPointF(mark.x + middle, mark.y + middle), unit);
}

}  // namespace

void CurveLayer::Draw(const std::map<int, Series>& series, const PlotScale& scale, double deviceRatio,
                      bool halo) {
    ratio = deviceRatio;
    rim = OnScreen(kSignReach, ratio);
    place = QPoint(OnScreen(scale.plot.left, ratio), OnScreen(scale.plot.Top(), ratio));
    const int pen = std::max(static_cast<int>(std::lround(ratio)), 1);
    const PlotScale onScreen = ScreenScale(scale, ratio);

    const QSize size(onScreen.plot.width + 2 * rim + pen, onScreen.plot.height + 2 * rim + pen);
    if (lines.size() != size) lines = QImage(size, QImage::Format_ARGB32_Premultiplied);
    lines.fill(Qt::transparent);
    rims = halo ? QImage(size, QImage::Format_ARGB32_Premultiplied) : QImage();
    rims.fill(Qt::transparent);

    QPainter linePainter(&lines);
    linePainter.translate(rim, rim);
    QPainter rimPainter;
    if (halo) {
        rimPainter.begin(&rims);
        rimPainter.translate(rim, rim);
    }
    for (const auto& [file, curve] : series) {
        const std::vector<ColumnRun> runs = ColumnRunsOf(CurveOf(curve, onScreen), onScreen.plot.width);
        DrawRuns(linePainter, runs, file, CurveColor(file), pen, 0, ratio);
        if (halo) DrawRuns(rimPainter, runs, file, kHaloColor, pen, pen, ratio);
    }
}

void CurveLayer::LayOver(QPainter& painter, const QRect& haloArea) const {
    const QPoint corner = place - QPoint(rim, rim);
    if (!rims.isNull() && !haloArea.isEmpty()) {
        const QRect area(OnScreen(haloArea.left(), ratio), OnScreen(haloArea.top(), ratio),
                         OnScreen(haloArea.width(), ratio), OnScreen(haloArea.height(), ratio));
        painter.drawImage(area.topLeft(), rims, area.translated(-corner));
    }
    painter.drawImage(corner, lines);
}

void DrawCurves(QPainter& painter, const std::map<int, Series>& series, const PlotScale& scale,
                const QRect& haloArea) {
    const auto draw = [&](int margin, bool isHalo) {
        painter.save();
        if (isHalo) painter.setClipRect(haloArea);
        // Whole pixels lie behind their coordinate, lines around it.
        painter.translate(scale.plot.left + 0.5, scale.plot.Top() + 0.5);
        painter.setBrush(Qt::NoBrush);
        for (const auto& [file, curve] : series) {
            const std::vector<Point> corners = CurveOf(curve, scale);
            QPolygon line;
            for (const Point& corner : corners) line.append(QPoint(corner.x, corner.y));
            painter.setPen(QPen(isHalo ? kHaloColor : CurveColor(file), 1 + 2 * margin));
            painter.drawPolyline(line);
            for (const Point& mark : MarksOn(ColumnRunsOf(corners, scale.plot.width), file, 1))
                DrawCurveSign(painter, file, QPointF(mark.x, mark.y));
        }
        painter.restore();
    };
    if (!haloArea.isEmpty()) draw(1, true);
    draw(0, false);
}

}  // namespace Report
