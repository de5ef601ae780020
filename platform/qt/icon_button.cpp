#include "platform/qt/icon_button.h"

#include "platform/qt/layout_grid.h"

IconButton::IconButton(IconName icon, const QString& text, const QString& name, QWidget* parent)
    : QToolButton(parent) {
    setIcon(TintedIcon(icon));
    setText(text);
    setToolButtonStyle(Qt::ToolButtonIconOnly);
    setAccessibleName(name);
    setFocusPolicy(Qt::StrongFocus);
}

QSize IconButton::sizeHint() const {
    return QToolButton::sizeHint().expandedTo(QSize(kIconButtonWidth, kIconButtonHeight));
}
