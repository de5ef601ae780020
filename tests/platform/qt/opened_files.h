#pragma once

#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QUrl>

/// Stands for the user's programs while it lives: files that are opened with them, or other schemes, come here.
class OpenedFiles : public QObject {
    Q_OBJECT

public:
    explicit OpenedFiles(const QStringList& schemes = {QStringLiteral("file")}) : schemes(schemes) {
        for (const QString& scheme : schemes) QDesktopServices::setUrlHandler(scheme, this, "Take");
    }
    ~OpenedFiles() override {
        for (const QString& scheme : schemes) QDesktopServices::unsetUrlHandler(scheme);
    }

    QList<QUrl> urls;

public slots:
    void Take(const QUrl& url) { urls.append(url); }

private:
    const QStringList schemes;
};
