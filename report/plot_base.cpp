#include "report/plot_base.h"

#include "platform/qt/wide_text.h"
#include "report/curve_sign.h"
#include "report/plot_colors.h"
#include "report/rules/value_axis.h"

#include <QFontMetrics>

#include <algorithm>

namespace Report {

namespace {

constexpr int kTick = 3;
constexpr int kLabelGap = 4;  // between the axis and what is below it: room for the marks of bad frames
constexpr int kTitleX = 2;

// Lines along an axis are filled rectangles: whole pixels at every device ratio.

void DrawAcross(QPainter& painter, int x, int y, int width, const QColor& color) {
    painter.fillRect(x, y, width, 1, color);
}

void DrawUpright(QPainter& painter, const PlotGeometry& plot, int x, const QColor& color) {
    painter.fillRect(x, plot.Top(), 1, plot.height + 1, color);
}

void DrawText(QPainter& painter, int x, int top, const QString& text) {
    painter.drawText(QPointF(x, top + QFontMetrics(painter.font()).ascent()), text);
}

void DrawValueAxis(QPainter& painter, const PlotState& state) {
    const PlotGeometry& plot = state.scale.plot;
    for (const AxisLine& line : ValueAxis(state.scale, state.charWidth, state.textHeight)) {
        const bool isAcross = line.isEnd || state.showGrid;
        DrawAcross(painter, plot.left, line.y, isAcross ? plot.width + 1 : kTick,
                   line.isEnd || !isAcross ? kAxisColor : kGridColor);
        painter.setPen(kPlotTextColor);
        DrawText(painter, line.labelX, line.labelY - state.textHeight / 2,
                 QString::fromStdString(line.label));
    }
}

void DrawFrameTick(QPainter& painter, const PlotState& state, int x, int frame, const QColor& color) {
    DrawUpright(painter, state.scale.plot, x, color);
    const QString label = QString::number(frame);
    const int width = QFontMetrics(painter.font()).horizontalAdvance(label);
    // A number that is too long for the margin ends at the window's edge.
    const QRect place(std::min(x, state.size.width() - width), state.scale.plot.bottom + kLabelGap, width,
                      state.textHeight);
    // A label that lies over an earlier one stays legible.
    painter.fillRect(place.adjusted(-1, 0, 1, 0), kPlotGround);
    painter.setPen(kPlotTextColor);
    DrawText(painter, place.x(), place.y(), label);
}

void DrawFrameAxis(QPainter& painter, const PlotState& state) {
    const PlotScale& scale = state.scale;
    DrawFrameTick(painter, state, scale.plot.left, scale.rangeFirst, kAxisColor);
    if (state.cursor) {
        DrawFrameTick(painter, state, scale.FrameX(*state.cursor), *state.cursor,
                      state.isOverview ? kAxisColor : kCursorColor);
    }
    DrawFrameTick(painter, state, scale.plot.Right(), scale.rangeLast, kAxisColor);
}

void DrawMarks(QPainter& painter, const std::vector<int>& frames, const PlotScale& scale) {
    painter.setPen(QPen(kBadFrameMarkColor, 1));
    for (const int frame : frames) {
        if (frame < scale.rangeFirst || frame > scale.rangeLast) continue;
        DrawBadFrameMark(painter, QPoint(scale.FrameX(frame), scale.plot.bottom));
    }
}

void DrawTitles(QPainter& painter, const QString& valueTitle, const PlotState& state) {
    const PlotGeometry& plot = state.scale.plot;
    painter.setPen(kPlotTextColor);
    DrawText(painter, plot.Right() - 5 * state.charWidth, plot.bottom + state.textHeight + kLabelGap,
             QStringLiteral("Frame"));

    painter.save();
    QFont font(QStringLiteral("Arial"));
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(QFontInfo(state.font).pixelSize());
    painter.setFont(font);
    painter.translate(kTitleX, plot.bottom - plot.height / 2);
    painter.rotate(-90);
    const QFontMetrics metrics(font);
    const QString title = metrics.elidedText(valueTitle, Qt::ElideRight, state.size.height());
    DrawText(painter, -metrics.horizontalAdvance(title) / 2, 0, title);
    painter.restore();
}

/// The box of the axes, without numbers: there is nothing that they would be of.
void DrawEmptyPlot(QPainter& painter, const PlotGeometry& plot) {
    for (const int y : {plot.Top(), plot.bottom})
        DrawAcross(painter, plot.left, y, plot.width + 1, kAxisColor);
    for (const int x : {plot.left, plot.Right()}) DrawUpright(painter, plot, x, kAxisColor);
    painter.setPen(kQuietPlotTextColor);
    painter.drawText(QRect(plot.left, plot.Top(), plot.width, plot.height), Qt::AlignCenter,
                     QStringLiteral("No results"));
}

}  // namespace

QRect PlotState::Band() const {
    if (!isOverview) return {};
    const int left = scale.FrameX(bandFirst);
    return QRect(left, scale.plot.Top(), scale.FrameX(bandLast) - left + 1, scale.plot.height + 1);
}

PlotState EmptyPlot(const QSize& size, const QFont& font) {
    const QFontMetrics metrics(font);
    PlotState state;
    state.size = size;
    state.font = font;
    state.charWidth = metrics.averageCharWidth();
    state.textHeight = metrics.height();
    state.scale.plot = PlotGeometry::In(size.width(), size.height(), state.charWidth, state.textHeight);
    return state;
}

void DrawPlotBase(QPainter& painter, const ReportData& data, const PlotState& state) {
    painter.setFont(state.font);
    painter.fillRect(QRect(QPoint(0, 0), state.size), kPlotGround);
    if (data.series.empty()) {
        DrawEmptyPlot(painter, state.scale.plot);
    } else {
        if (state.isOverview) painter.fillRect(state.Band(), kBandColor);
        DrawValueAxis(painter, state);
        DrawFrameAxis(painter, state);
        if (data.badFrames) DrawMarks(painter, *data.badFrames, state.scale);
    }
    DrawTitles(painter, ToQString(data.valueTitle), state);
}

}  // namespace Report
