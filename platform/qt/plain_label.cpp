#include "platform/qt/plain_label.h"

#include "platform/qt/wide_text.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

PlainLabel::PlainLabel(const QString& text, Tone tone, Fit fit, QWidget* parent) : QLabel(parent), fit(fit) {
    setTextFormat(Qt::PlainText);
    setText(text);
    if (tone == Tone::Quiet) setForegroundRole(QPalette::PlaceholderText);
}

QSize PlainLabel::minimumSizeHint() const {
    if (fit == Fit::Whole) return QLabel::minimumSizeHint();
    return QSize(0, QLabel::minimumSizeHint().height());
}

bool PlainLabel::IsCut() const {
    return fit == Fit::Elide && fontMetrics().horizontalAdvance(text()) > contentsRect().width();
}

bool PlainLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && IsCut()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), PlainToolTip(text()), this);
        return true;
    }
    return QLabel::event(event);
}

void PlainLabel::paintEvent(QPaintEvent* event) {
    if (!IsCut()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    const QString cut = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                          palette(), isEnabled(), cut, foregroundRole());
}
