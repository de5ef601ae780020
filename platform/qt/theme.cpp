#include "platform/qt/theme.h"

#include "platform/qt/color_scheme.h"
#include "platform/qt/contrast_style.h"
#include "platform/qt/icon.h"
#include "platform/qt/palette.h"

#include <QApplication>
#include <QStyle>
#include <QToolTip>

void InstallTheme(QApplication& application) {
    application.setWindowIcon(ProgramIcon());

    // Fusion is what Qt takes where neither the platform nor the user names a style, in the palette of Fusion where
    // nobody names colours.
    const QStyle& given = *QApplication::style();
    if (given.name().compare(QLatin1String("fusion"), Qt::CaseInsensitive) != 0) return;

    const bool hasColors = QApplication::palette() != given.standardPalette();
    QApplication::setStyle(new ContrastStyle);  // the application owns it
    if (hasColors) return;

    const QPalette palette = SchemePalette(DesktopColorScheme());
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}
