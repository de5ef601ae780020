#include "platform/qt/message_box.h"

#include "platform/qt/wide_text.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QPushButton>

namespace {

/// Ctrl+C copies its text, without the marks where that may break into lines. Parts of it can't be selected.
class MessageBox : public QMessageBox {
public:
    MessageBox(QWidget* parent, Icon icon, const std::wstring& title, const std::wstring& text)
        : QMessageBox(parent ? parent : QApplication::activeWindow()), plainText(ToQString(text)) {
        setIcon(icon);
        setWindowTitle(ToQString(title));
        setTextFormat(Qt::PlainText);
        setTextInteractionFlags(Qt::NoTextInteraction);
        setText(BreakableText(plainText));
    }

    /// Runs the box with `refuse` as the safe answer; whether the other button was taken.
    bool Ask(StandardButton refuse) {
        QPushButton* safe = addButton(refuse);
        setDefaultButton(safe);
        setEscapeButton(safe);
        exec();
        return clickedButton() && clickedButton() != safe;
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (!event->matches(QKeySequence::Copy)) return QMessageBox::keyPressEvent(event);
        QGuiApplication::clipboard()->setText(plainText);
    }

private:
    QString plainText;
};

}  // namespace

void ShowMessage(QWidget* parent, QMessageBox::Icon icon, const std::wstring& title, const std::wstring& text,
                 const std::wstring& advice) {
    MessageBox box(parent, icon, title, text);
    box.setInformativeText(PlainToolTip(ToQString(advice)));  // which may take it for markup as well
    box.addButton(QMessageBox::Ok);
    box.exec();
}

bool AskYesNo(QWidget* parent, QMessageBox::Icon icon, const std::wstring& title, const std::wstring& text) {
    MessageBox box(parent, icon, title, text);
    box.addButton(QMessageBox::Yes);
    return box.Ask(QMessageBox::No);
}

bool AskToProceed(QWidget* parent, QMessageBox::Icon icon, const std::wstring& title,
                  const std::wstring& text, const std::wstring& label) {
    MessageBox box(parent, icon, title, text);
    box.addButton(ToQString(label), QMessageBox::AcceptRole);
    return box.Ask(QMessageBox::Cancel);
}
