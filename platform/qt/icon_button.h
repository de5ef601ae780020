#pragma once

#include "platform/qt/icon.h"

#include <QToolButton>

/// A button that shows an icon only. `text` is what it is called in texts, such as "<"; `name` is what a
/// screen reader calls it, in words.
class IconButton : public QToolButton {
    Q_OBJECT

public:
    IconButton(IconName icon, const QString& text, const QString& name, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
};
