#include "app/shell/contact.h"

#include "platform/product_addresses.h"
#include "platform/qt/message_box.h"
#include "platform/qt/open_outside.h"
#include "platform/text.h"

void OpenProductPage(QWidget* parent) {
    OpenPage(parent, FromUtf8(ProductPage()));
}

void OpenPage(QWidget* parent, const std::wstring& address) {
    if (OpenWebPage(address)) return;
    ShowMessage(parent, QMessageBox::Warning, L"Tolvane: Error",
                L"No web browser opened \"" + address + L"\". Open the address yourself.");
}

void SendFeedback(QWidget* parent) {
    const std::wstring address = FromUtf8(FeedbackAddress());
    if (ComposeMail(address)) return;
    ShowMessage(parent, QMessageBox::Warning, L"Tolvane: Error",
                L"No mail program was found. Write to \"" + address + L"\".");
}
