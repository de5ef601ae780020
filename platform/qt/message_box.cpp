#include "platform/qt/message_box.h"

#include "platform/qt/wide_text.h"

#include <QApplication>
#include <QPushButton>

namespace {

class MessageBox : public QMessageBox {
public:
    MessageBox(QWidget* parent, Icon icon, const std::wstring& title, const std::wstring& text)
        : QMessageBox(parent ? parent : QApplication::activeWindow()) {
        setIcon(icon);
        setWindowTitle(ToQString(title));
        setTextFormat(Qt::PlainText);
        setText(BreakableText(ToQString(text)));
    }

    /// Runs the box with `refuse` as the safe answer; whether the other button was taken.
    bool Ask(StandardButton refuse) {
        QPushButton* safe = addButton(refuse);
        setDefaultButton(safe);
        setEscapeButton(safe);
        exec();
        return clickedButton() && clickedButton() != safe;
    }
};

}  // namespace

void ShowMessage(QWidget* parent, QMessageBox::Icon icon, const std::wstring& title,
                 const std::wstring& text) {
    MessageBox box(parent, icon, title, text);
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
