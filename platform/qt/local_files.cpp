#include "platform/qt/local_files.h"

#include "platform/text.h"

#include <QMimeData>
#include <QUrl>

#include <filesystem>

namespace {

// The bytes of the address rather than its decoded text, in which a name that isn't UTF-8 is lost.
std::string LocalPath(const QUrl& url) {
    if (!url.isLocalFile() || !url.host().isEmpty()) return {};
    return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

}  // namespace

std::vector<std::wstring> LocalFiles(const QMimeData& data) {
    std::vector<std::wstring> paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl& url : urls) {
        const std::string path = LocalPath(url);
        std::error_code error;
        if (path.empty() || !std::filesystem::is_regular_file(path, error)) return {};
        paths.push_back(FromUtf8(path));
    }
    return paths;
}
