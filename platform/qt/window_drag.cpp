#include "platform/qt/window_drag.h"

#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

void WindowDrag::Press(QWidget& window, QMouseEvent& event) {
    if (event.button() != Qt::LeftButton) return event.ignore();
    if (window.windowHandle() && window.windowHandle()->startSystemMove()) return;
    grabbed = event.globalPosition().toPoint() - window.frameGeometry().topLeft();
}

void WindowDrag::Move(QWidget& window, const QMouseEvent& event) const {
    if (grabbed) window.move(event.globalPosition().toPoint() - *grabbed);
}
