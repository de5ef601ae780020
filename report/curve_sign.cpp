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

void DrawBadFrameMark(QPainter& painter, QPoint tip) {
    painter.drawPolygon(QPolygon({tip, tip + QPoint(-2, 4), tip + QPoint(2, 4)}));
}

}  // namespace Report
