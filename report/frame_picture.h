#pragma once

#include "report/rules/frame_range.h"
#include "report/rules/picture_view.h"

#include <QImage>
#include <QWidget>

namespace Report {

/// A frame of a video, pixel for pixel at 100 percent. It is dragged with the left button and zoomed with the
/// wheel.
class FramePicture : public QWidget {
    Q_OBJECT

public:
    explicit FramePicture(QWidget* parent = nullptr);

    /// Shows another frame at the same place and zoom. The frame's size may be another one.
    void SetImage(const QImage& image);
    const QImage& Image() const { return image; }

    void SetZoom(int percent);
    const PictureView& View() const { return view; }

signals:
    /// By the wheel.
    void Zoomed(int percent);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    QSize SizeOnScreen() const;
    QPoint OnScreen(QPointF position) const;
    void EndDrag();

    QImage image;
    PictureView view;
    bool dragging = false;
    QPoint last;  // pointer of the drag, in pixels of the screen
    WheelSteps wheel;
};

}  // namespace Report
