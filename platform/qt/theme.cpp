#include "platform/qt/theme.h"

#include "platform/qt/color_scheme.h"
#include "platform/qt/contrast_style.h"
#include "platform/qt/icon.h"
#include "platform/qt/palette.h"

#include <QApplication>
#include <QStyle>
#include <QToolTip>

#include <optional>

void InstallTheme(QApplication& application) {
    application.setWindowIcon(ProgramIcon());

    // Fusion is what Qt takes where neither the platform nor the user names a style, in the palette of Fusion
    // where nobody names colours.
    const QStyle& given = *QApplication::style();
    if (given.name().compare(QLatin1String("fusion"), Qt::CaseInsensitive) != 0) return;

    std::optional<QPalette> colors;
    if (QApplication::palette() == given.standardPalette()) colors = SchemePalette(DesktopColorScheme());
    // Not by QApplication::setPalette: each widget would have a copy of it, and Fusion, which draws a control
    // once for each palette, would draw it for every widget and keep that.
    QApplication::setStyle(new ContrastStyle(colors));  // the application owns it
    if (colors) QToolTip::setPalette(*colors);
}
