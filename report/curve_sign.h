#pragma once

#include <QPainter>
#include <QPoint>
#include <QRect>

namespace Report {

/// The sign on a file's curve that tells it from the others without its colour: none for the original, a
/// circle for the first processed, a square for the second. `unit` is the number of the painter's pixels in a
/// logical one; the sign is 7 units wide. The painter's pen and brush decide its look.
void DrawCurveSign(QPainter& painter, int file, QPointF centre, double unit = 1);

/// A piece of a file's curve for legends: a thick line through the middle of `place`, with the sign on it.
void DrawCurveSample(QPainter& painter, int file, const QRect& place);

/// The triangle that marks a bad frame, with its tip at `tip`, twice as high as half of its width; the
/// painter's pen draws it.
void DrawBadFrameMark(QPainter& painter, QPoint tip, int halfWidth = 2);

}  // namespace Report
