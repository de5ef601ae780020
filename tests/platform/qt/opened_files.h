#pragma once

#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QUrl>

/// Stands for the user's programs while it lives: files that are opened with them come here.
class OpenedFiles : public QObject {
    Q_OBJECT

public:
    OpenedFiles() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "Take"); }
    ~OpenedFiles() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QList<QUrl> urls;

public slots:
    void Take(const QUrl& url) { urls.append(url); }
};
