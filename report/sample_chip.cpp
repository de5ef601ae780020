#include "report/sample_chip.h"

#include "report/curve_sign.h"
#include "report/plot_colors.h"

#include <QPainter>

namespace Report {

namespace {

constexpr QSize kSize(34, 15);
constexpr int kInside = 3;

}  // namespace

SampleChip::SampleChip(int shownFile, QWidget* parent) : QWidget(parent), file(shownFile) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize SampleChip::sizeHint() const {
    return kSize;
}

void SampleChip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), kPlotGround);
    if (file == kBadFrame) {
        painter.setPen(QPen(kBadFrameMarkColor, 1));
        // Larger than on the axis, where there is no room.
        const QPoint tip(rect().center().x(), rect().center().y() - 3);
        DrawBadFrameMark(painter, tip, 3);
    } else {
        DrawCurveSample(painter, file, rect().adjusted(kInside, 0, -kInside, 0));
    }
}

}  // namespace Report
