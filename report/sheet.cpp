#include "report/sheet.h"

#include "platform/qt/palette.h"
#include "report/plot_colors.h"

#include <QEvent>

namespace Report {

Sheet::Sheet(QWidget* parent) : QFrame(parent) {
    setFrameShape(QFrame::Box);
    setLineWidth(1);
    setAutoFillBackground(true);
    Colour();
}

void Sheet::changeEvent(QEvent* event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::ApplicationPaletteChange) Colour();
}

void Sheet::Colour() {
    QPalette colours;
    colours.setColor(QPalette::Window, kPlotGround);
    colours.setColor(QPalette::WindowText, OutlineColor(QPalette()));
    setPalette(colours);
}

}  // namespace Report
