#include "platform/qt/label_column.h"

#include <QEvent>
#include <QWidget>

#include <algorithm>

void LabelColumn::Add(QWidget* member) {
    members.append(member);
    member->installEventFilter(this);
    Align();
}

bool LabelColumn::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Polish:  // the style has set its font only now
        case QEvent::FontChange:
        case QEvent::StyleChange:
            // The member itself hears of it only after this.
            QMetaObject::invokeMethod(this, &LabelColumn::Align, Qt::QueuedConnection);
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

void LabelColumn::Align() {
    int widest = 0;
    for (const auto& member : members) {
        if (member) widest = std::max(widest, member->sizeHint().width());
    }
    for (const auto& member : members) {
        if (member && member->minimumWidth() != widest) member->setMinimumWidth(widest);
    }
}
