// Writes the program's icon as the pictures that desktops look for beside the scalable drawing:
//     icon_files DIRECTORY        DIRECTORY/32x32/apps/tolvane.png and so on

#include "platform/qt/icon.h"

#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>

#include <cstdio>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: icon_files DIRECTORY\n", stderr);
        return 64;
    }
    const QIcon icon = ProgramIcon();
    for (const QSize size : icon.availableSizes()) {
        const QString directory =
            QStringLiteral("%1/%2x%2/apps").arg(QString::fromLocal8Bit(argv[1])).arg(size.width());
        const QString file = directory + QStringLiteral("/tolvane.png");
        if (!QDir().mkpath(directory) || !icon.pixmap(size).save(file)) {
            std::fprintf(stderr, "icon_files: \"%s\" can't be written\n", qPrintable(file));
            return 1;
        }
    }
    return 0;
}
