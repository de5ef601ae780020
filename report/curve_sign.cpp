#include "report/curve_sign.h"

#include "report/plot_colors.h"

#include <QPolygonF>

namespace Report {

namespace {

constexpr int kSampleThickness = 3;

QPolygonF Scaled(const QPolygonF& shape, QPointF centre, double unit) {
    QPolygonF polygon;
    for (const QPointF& corner : shape) polygon.append(centre + corner * unit);
    return polygon;
}

}  // namespace

void DrawCurveSign(QPainter& painter, int file, QPointF centre, double unit) {
    // Without smoothing these corners give a circle of 7 pixels.
    static const QPolygonF kCircle({{-1, -3}, {1, -3}, {3, -1}, {3, 1}, {1, 3}, {-1, 3}, {-3, 1}, {-3, -1}});
    static const QPolygonF kSquare({{-3, -3}, {3, -3}, {3, 3}, {-3, 3}});
    if (file == 1) painter.drawPolygon(Scaled(kCircle, centre, unit));
    if (file == 2) painter.drawPolygon(Scaled(kSquare, centre, unit));
}

void DrawCurveSample(QPainter& painter, int file, const QRect& place) {
    const QPoint centre = place.center();
    painter.fillRect(QRect(place.left(), centre.y() - kSampleThickness / 2, place.width(), kSampleThickness),
                     CurveColor(file));
    painter.save();
    painter.setPen(QPen(CurveColor(file), 1));
    painter.setBrush(kPlotGround);
    DrawCurveSign(painter, file, centre);
    painter.restore();
}

void DrawBadFrameMark(QPainter& painter, QPoint tip, int halfWidth) {
    const QPoint left = tip + QPoint(-halfWidth, 2 * halfWidth);
    const QPoint right = tip + QPoint(halfWidth, 2 * halfWidth);
    // As a polygon it would lack its last corner.
    painter.drawLine(tip, left);
    painter.drawLine(tip, right);
    painter.drawLine(left, right);
}

}  // namespace Report
