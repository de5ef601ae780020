#pragma once

#include <QEvent>
#include <QGroupBox>

/// A step of the main dialog. Its mnemonic leads to its first control; groups of Qt prefer the one that was
/// used last.
class StepGroup : public QGroupBox {
public:
    using QGroupBox::QGroupBox;

    /// Gives the focus to the step's first control.
    void FocusFirst() { first->setFocus(Qt::ShortcutFocusReason); }

protected:
    void SetFirst(QWidget* control) { first = control; }

    bool event(QEvent* event) override {
        if (event->type() != QEvent::Shortcut) return QGroupBox::event(event);
        FocusFirst();
        return true;
    }

private:
    QWidget* first = nullptr;  // set by who has made the controls
};
