#include "app/shell/late_clicks.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QSignalBlocker>

#include <utility>

LateClicks::LateClicks(std::function<bool()> busy) : isBusy(std::move(busy)) {
    qApp->installEventFilter(this);
}

bool LateClicks::IsBlocked(const QAbstractButton& button) const {
    const QWidget* const modal = QApplication::activeModalWidget();
    if (!modal) return isBusy();
    for (const QWidget* widget = &button; widget; widget = widget->parentWidget())
        if (widget == modal) return false;  // also in a window that belongs to the modal one
    return true;
}

bool LateClicks::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::Timer) return false;
    auto* const button = qobject_cast<QAbstractButton*>(watched);
    if (!button || button->isCheckable() || !IsBlocked(*button)) return false;
    // The button stops its timer and comes up again, but nobody hears of it.
    const QSignalBlocker silence(button);
    watched->event(event);
    return true;
}
