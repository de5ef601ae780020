#include "platform/qt/open_outside.h"

#include "platform/qt/wide_text.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace {

bool Open(const QUrl& url) {
    return url.isValid() && QDesktopServices::openUrl(url);
}

}  // namespace

bool OpenWebPage(const std::wstring& address) {
    // A plug-in gives the address of its page, and an address of another kind may start any program.
    const QUrl url(ToQString(address), QUrl::StrictMode);
    return (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http")) && Open(url);
}

bool ComposeMail(const std::wstring& address) {
    QUrl url;
    url.setScheme(QStringLiteral("mailto"));
    url.setPath(ToQString(address));
    return Open(url);
}

bool OpenFileOutside(const std::wstring& path) {
    const QFileInfo file(ToQString(path));
    return file.exists() && Open(QUrl::fromLocalFile(file.absoluteFilePath()));
}
