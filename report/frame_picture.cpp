#include "report/frame_picture.h"

#include "report/to_qt.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace Report {

FramePicture::FramePicture(QWidget* parent) : QWidget(parent) {
    setWindowTitle(QStringLiteral("Frame visualization"));
    setAccessibleName(windowTitle());
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void FramePicture::SetImage(const QImage& newImage) {
    image = newImage;
    view.imageWidth = image.width();
    view.imageHeight = image.height();
    update();
}

void FramePicture::SetZoom(int percent) {
    view.percent = percent;
    update();
}

QSize FramePicture::SizeOnScreen() const {
    return (QSizeF(size()) * devicePixelRatioF()).toSize();
}

QPoint FramePicture::OnScreen(QPointF position) const {
    return (position * devicePixelRatioF()).toPoint();
}

void FramePicture::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const double ratio = devicePixelRatioF();
    painter.scale(1 / ratio, 1 / ratio);
    const QSize window = SizeOnScreen();
    const PictureView::Placement placement = view.In(window.width(), window.height());
    const QRect target = ToQRect(placement.target);
    if (!target.isEmpty()) painter.drawImage(target, image, ToQRect(placement.part));

    const QRegion around = QRegion(QRect(QPoint(0, 0), window)).subtracted(target);
    for (const QRect& strip : around) painter.fillRect(strip, palette().color(QPalette::Button));
    event->accept();
}

void FramePicture::mousePressEvent(QMouseEvent* event) {
    const QPoint pointer = OnScreen(event->position());
    const QSize window = SizeOnScreen();
    const bool isInPicture =
        view.In(window.width(), window.height()).target.Contains(pointer.x(), pointer.y());
    if (event->button() != Qt::LeftButton || !isInPicture) return event->ignore();
    dragging = true;
    last = pointer;
    setCursor(Qt::ClosedHandCursor);
}

void FramePicture::mouseMoveEvent(QMouseEvent* event) {
    if (!dragging) return event->ignore();
    // With the button held, moves go on to come from outside the picture.
    if (!rect().contains(event->position().toPoint())) return EndDrag();
    const QPoint pointer = OnScreen(event->position());
    view.Drag(pointer.x() - last.x(), pointer.y() - last.y());
    last = pointer;
    update();
}

void FramePicture::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return event->ignore();
    EndDrag();
}

void FramePicture::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    EndDrag();
}

void FramePicture::EndDrag() {
    dragging = false;
    unsetCursor();
}

void FramePicture::wheelEvent(QWheelEvent* event) {
    event->accept();
    const int notches = wheel.Take(event->angleDelta().y());
    const int percent = ZoomByWheel(view.percent, notches);
    if (percent == view.percent) return;
    const QSize window = SizeOnScreen();
    const QPoint pointer = OnScreen(event->position());
    view.ZoomAt(percent, pointer.x(), pointer.y(), window.width(), window.height());
    update();
    emit Zoomed(percent);
}

}  // namespace Report
