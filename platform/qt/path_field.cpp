#include "platform/qt/path_field.h"

#include "platform/qt/elide_path.h"
#include "platform/qt/local_files.h"
#include "platform/qt/wide_text.h"

#include <QDragEnterEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFrame>
#include <QToolTip>

namespace {

constexpr int kTextIndent = 2;  // what a line edit keeps free within its text margins
constexpr int kDropOutline = 2;

}  // namespace

PathField::PathField(Drop drop, QWidget* parent) : QLineEdit(parent), drop(drop) {
    setAcceptDrops(drop == Drop::File);
    ShowHint();
}

void PathField::SetPath(const std::wstring& path) {
    setText(ToQString(path));
}

std::wstring PathField::Path() const {
    return ToWide(text());
}

void PathField::SetDropHighlight(bool on) {
    if (isDropTarget == on) return;
    isDropTarget = on;
    update();
}

bool PathField::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && isEnabled() && !text().isEmpty()) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), PlainToolTip(text()), this);
        return true;
    }
    return QLineEdit::event(event);
}

void PathField::changeEvent(QEvent* event) {
    QLineEdit::changeEvent(event);
    if (event->type() == QEvent::EnabledChange) ShowHint();
}

void PathField::ShowHint() {
    setPlaceholderText(drop == Drop::File && isEnabled() ? tr("Drop a file here") : QString());
}

QRect PathField::TextRect(const QStyleOptionFrame& frame) const {
    return style()
        ->subElementRect(QStyle::SE_LineEditContents, &frame, this)
        .marginsRemoved(textMargins())
        .adjusted(kTextIndent, 0, -kTextIndent, 0);
}

void PathField::paintEvent(QPaintEvent* event) {
    QStyleOptionFrame frame;
    initStyleOption(&frame);
    if (hasFocus() || fontMetrics().horizontalAdvance(text()) <= TextRect(frame).width()) {
        QLineEdit::paintEvent(event);
    } else {
        PaintElided(frame);
    }
    if (isDropTarget) PaintDropHighlight();
}

void PathField::PaintElided(const QStyleOptionFrame& frame) {
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &frame, &painter, this);
    const QRect rect = TextRect(frame);
    style()->drawItemText(&painter, rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, palette(),
                          isEnabled(), ElidePath(text(), fontMetrics(), rect.width()), QPalette::Text);
}

void PathField::PaintDropHighlight() {
    QPainter painter(this);
    painter.setPen(QPen(palette().color(QPalette::Highlight), kDropOutline, Qt::SolidLine, Qt::SquareCap,
                        Qt::MiterJoin));
    painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
}

// The mnemonic of a control that is off comes here as a letter, which isn't meant for the path.
void PathField::keyPressEvent(QKeyEvent* event) {
    const bool isMnemonic =
        event->modifiers() == Qt::AltModifier && event->text().size() == 1 && event->text().front().isPrint();
    if (isMnemonic)
        event->ignore();
    else
        QLineEdit::keyPressEvent(event);
}

void PathField::dragEnterEvent(QDragEnterEvent* event) {
    const bool accepts = isEnabled() && LocalFiles(*event->mimeData()).size() == 1;
    SetDropHighlight(accepts);
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(accepts);
}

void PathField::dragMoveEvent(QDragMoveEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(isDropTarget);
}

void PathField::dragLeaveEvent(QDragLeaveEvent*) {
    SetDropHighlight(false);
}

void PathField::dropEvent(QDropEvent* event) {
    SetDropHighlight(false);
    const std::vector<std::wstring> paths = LocalFiles(*event->mimeData());
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(paths.size() == 1);
    if (!event->isAccepted()) return;

    QMetaObject::invokeMethod(
        this, [this, path = paths.front()] { emit FileDropped(path); }, Qt::QueuedConnection);
}
