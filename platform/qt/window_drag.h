#pragma once

#include <QPoint>

#include <optional>

class QMouseEvent;
class QWidget;

/// Moves a window that is dragged by its surface: it passes the window's own mouse events on. The window
/// system moves it if it can.
class WindowDrag {
public:
    /// Leaves all buttons but the left one to others.
    void Press(QWidget& window, QMouseEvent& event);
    void Move(QWidget& window, const QMouseEvent& event) const;
    void Release() { grabbed.reset(); }

private:
    std::optional<QPoint> grabbed;  // of the pointer, from the window's corner
};
