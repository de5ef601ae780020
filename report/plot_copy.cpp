#include "report/plot_copy.h"

#include "platform/qt/wide_text.h"
#include "platform/text.h"
#include "report/curve_layer.h"
#include "report/curve_sign.h"
#include "report/plot_colors.h"

#include <QBuffer>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QScreen>
#include <QSvgGenerator>

#include <algorithm>

namespace Report {

namespace {

constexpr int kInside = 5;  // between a box and what is in it
constexpr int kSampleWidth = 20;
constexpr int kStampInset = 4;  // from the plot's corner

void DrawStamp(QPainter& painter, const PlotState& state) {
    const PlotGeometry& plot = state.scale.plot;
    painter.setFont(state.font);
    painter.setPen(kStampColor);
    painter.drawText(
        QPointF(plot.left + kStampInset, plot.Top() + kStampInset + QFontMetrics(state.font).ascent()),
        QStringLiteral("Tolvane"));
}

/// The names of the files with curves, in a box at the plot's right edge.
void DrawLegend(QPainter& painter, const ReportData& data, const PlotState& state) {
    if (data.series.empty()) return;
    const PlotGeometry& plot = state.scale.plot;
    const QFontMetrics metrics(state.font);
    const int textX = 2 * kInside + kSampleWidth;
    const int textRoom = std::max(plot.width / 2 - textX - kInside, 0);
    std::map<int, QString> names;
    int textWidth = 0;
    for (const auto& [file, curve] : data.series) {
        const QString name = ToQString(FileNamePart(data.paths.at(file)));
        names[file] = metrics.elidedText(name, Qt::ElideMiddle, textRoom);
        textWidth = std::max(textWidth, metrics.horizontalAdvance(names[file]));
    }

    const int width = textX + textWidth + kInside;
    const int height = static_cast<int>(names.size()) * state.textHeight + 2 * kInside;
    const QRect box(plot.Right() - kInside - width, plot.Top() + kInside, width, height);
    painter.fillRect(box.adjusted(0, 0, 1, 1), kAxisColor);
    painter.fillRect(box.adjusted(1, 1, 0, 0), kPlotGround);
    int y = box.top() + kInside;
    for (const auto& [file, name] : names) {
        DrawCurveSample(painter, file, QRect(box.left() + kInside, y, kSampleWidth, state.textHeight));
        painter.setPen(kPlotTextColor);
        painter.drawText(QPointF(box.left() + textX, y + metrics.ascent()), name);
        y += state.textHeight;
    }
}

PlotState WithoutCursor(PlotState state) {
    state.cursor.reset();
    return state;
}

}  // namespace

QImage PlotCopy(const ReportData& data, const PlotState& shown, double factor) {
    const PlotState state = WithoutCursor(shown);
    QImage picture((QSizeF(state.size) * factor).toSize(), QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.scale(factor, factor);
    DrawPlotBase(painter, data, state);
    DrawStamp(painter, state);

    CurveLayer curves;
    curves.Draw(data.series, state.scale, factor, state.isOverview);
    painter.resetTransform();
    curves.LayOver(painter, state.Band());

    painter.scale(factor, factor);
    DrawLegend(painter, data, state);
    return picture;
}

QByteArray PlotSvg(const ReportData& data, const PlotState& shown) {
    const PlotState state = WithoutCursor(shown);
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(qRound(QGuiApplication::primaryScreen()->logicalDotsPerInch()));
    generator.setSize(state.size);
    generator.setViewBox(QRect(QPoint(0, 0), state.size));
    generator.setTitle(ToQString(data.valueTitle));
    QPainter painter(&generator);
    DrawPlotBase(painter, data, state);
    DrawStamp(painter, state);
    DrawCurves(painter, data.series, state.scale, state.Band());
    DrawLegend(painter, data, state);
    painter.end();
    return buffer.data();
}

}  // namespace Report
