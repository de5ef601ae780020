#include "report/hold_button.h"

#include <QMouseEvent>

namespace Report {

HoldButton::HoldButton(IconName icon, const QString& text, const QString& name, QWidget* parent)
    : IconButton(icon, text, name, parent) {
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, &QTimer::timeout, this, &HoldButton::Repeat);
    connect(this, &QToolButton::clicked, this, [this] {
        if (!hasRepeated) emit Command();
    });
}

void HoldButton::mousePressEvent(QMouseEvent* event) {
    IconButton::mousePressEvent(event);
    if (event->button() == Qt::LeftButton) timer.start(pace.DelayMs());
}

void HoldButton::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        timer.stop();
        pace.Restart();
    }
    IconButton::mouseReleaseEvent(event);  // this is the click
    hasRepeated = false;
}

void HoldButton::Repeat() {
    hasRepeated = true;
    emit Command();
    pace.Repeat();
    timer.start(pace.DelayMs());
}

void HoldButton::StopHolding() {
    timer.stop();
    pace.Restart();
    hasRepeated = false;
}

void HoldButton::hideEvent(QHideEvent* event) {
    StopHolding();
    IconButton::hideEvent(event);
}

void HoldButton::changeEvent(QEvent* event) {
    const bool isLost = event->type() == QEvent::ActivationChange && !isActiveWindow();
    if (isLost || (event->type() == QEvent::EnabledChange && !isEnabled())) StopHolding();
    IconButton::changeEvent(event);
}

}  // namespace Report
