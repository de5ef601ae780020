#include "report/report_graph.h"

#include "platform/file.h"
#include "platform/qt/file_chooser.h"
#include "platform/qt/message_box.h"
#include "platform/qt/wide_text.h"
#include "report/plot_copy.h"
#include "report/report_controller.h"
#include "report/rules/report_text.h"
#include "report/wait_cursor.h"

#include <QBuffer>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QToolTip>

namespace Report {

namespace {

constexpr int kFewestFramesOfOverview = 3;  // from the first to the last one

std::string Bytes(const QByteArray& data) {
    return std::string(data.constData(), static_cast<std::size_t>(data.size()));
}

}  // namespace

CReportGraph::CReportGraph(Kind kind, ReportController& reportController, QWidget* parent)
    : QWidget(parent), controller(reportController) {
    const ReportData& data = controller.Data();
    state.isOverview = kind == Kind::Overview && data.lastFrame - data.firstFrame >= kFewestFramesOfOverview;
    setWindowTitle(QStringLiteral("Result of measurements"));
    setAccessibleName(windowTitle());
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    LayOut();
    const FrameRange& range = controller.Range();
    Update(range.VisibleFirst(), range.VisibleLast(), range.Current());
}

void CReportGraph::Update(int visibleFirst, int visibleLast, int current) {
    const ReportData& data = controller.Data();
    if (state.isOverview) {
        state.bandFirst = visibleFirst;
        state.bandLast = visibleLast;
        state.scale.rangeFirst = data.firstFrame;
        state.scale.rangeLast = data.lastFrame;
    } else {
        const PlotScale& scale = state.scale;
        areCurvesStale |= scale.rangeFirst != visibleFirst || scale.rangeLast != visibleLast;
        state.scale.rangeFirst = visibleFirst;
        state.scale.rangeLast = visibleLast;
    }
    state.cursor = current;
    isPictureStale = true;
    setAccessibleDescription(
        ToQString(PlotDescription(data.series, data.firstFrame, data.lastFrame, current)));
}

void CReportGraph::SetGrid(bool on) {
    state.showGrid = on;
    isPictureStale = true;
}

void CReportGraph::Redraw() {
    update();
}

std::pair<bool, float> CReportGraph::ValueAt(int file, int current) const {
    const auto& series = controller.Data().series;
    const auto found = series.find(file);
    float value = 0;
    const bool has = found != series.end() && found->second.ValueAt(current, value);
    return {has, value};
}

void CReportGraph::LayOut() {
    PlotState laidOut = EmptyPlot(size(), font());
    laidOut.scale.rangeFirst = state.scale.rangeFirst;
    laidOut.scale.rangeLast = state.scale.rangeLast;
    laidOut.scale.values = controller.Data().values;
    laidOut.isOverview = state.isOverview;
    laidOut.showGrid = state.showGrid;
    laidOut.cursor = state.cursor;
    laidOut.bandFirst = state.bandFirst;
    laidOut.bandLast = state.bandLast;
    state = laidOut;
    isPictureStale = areCurvesStale = true;
}

void CReportGraph::DrawPicture() {
    const ReportData& data = controller.Data();
    const double ratio = devicePixelRatioF();
    const QSize onScreen = (QSizeF(size()) * ratio).toSize();
    if (picture.size() != onScreen) {
        picture = QImage(onScreen, QImage::Format_RGB32);
        areCurvesStale = true;  // another screen
    }
    QPainter painter(&picture);
    painter.scale(ratio, ratio);
    DrawPlotBase(painter, data, state);
    if (areCurvesStale) curves.Draw(data.series, state.scale, ratio, state.isOverview);
    painter.resetTransform();
    curves.LayOver(painter, state.Band());
    isPictureStale = areCurvesStale = false;
}

void CReportGraph::paintEvent(QPaintEvent* event) {
    const double ratio = devicePixelRatioF();
    if (isPictureStale || picture.size() != (QSizeF(size()) * ratio).toSize()) DrawPicture();
    picture.setDevicePixelRatio(ratio);
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.drawImage(0, 0, picture);
    picture.setDevicePixelRatio(1);
}

void CReportGraph::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    LayOut();
}

void CReportGraph::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        LayOut();
        update();
    }
}

void CReportGraph::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
    Grab(event->position().toPoint().x());
    ShowCursor(event->position().toPoint());
}

void CReportGraph::Grab(int x) {
    if (state.isOverview) {
        bandDrag.Start(state.scale, state.bandFirst, state.bandLast, x);
    } else if (state.scale.HasX(x)) {
        dragging = true;
        DragTo(x);
    }
}

void CReportGraph::DragTo(int x) {
    if (bandDrag.IsUnderWay())
        controller.SetCurrent(bandDrag.CentreAt(state.scale, state.bandFirst, state.bandLast, x), true);
    else if (dragging)
        controller.SetCurrent(state.scale.FrameAt(x), false);
    else
        return;
    controller.Redraw();
}

void CReportGraph::mouseMoveEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    // With the button held, moves go on to come from outside the plot.
    if (!rect().contains(position)) EndDrag();
    DragTo(position.x());
    ShowCursor(position);
    if (QToolTip::isVisible()) ShowPointText(position, event->globalPosition().toPoint());
}

void CReportGraph::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QWidget::mouseReleaseEvent(event);
    EndDrag();
    ShowCursor(event->position().toPoint());
}

void CReportGraph::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    EndDrag();
}

void CReportGraph::EndDrag() {
    dragging = false;
    bandDrag.End();
}

void CReportGraph::ShowCursor(QPoint position) {
    const PlotGeometry& plot = state.scale.plot;
    const bool isInHeight = position.y() >= plot.Top() && position.y() <= plot.bottom;
    Qt::CursorShape shape = Qt::ArrowCursor;
    if (bandDrag.IsUnderWay()) {
        shape = Qt::ClosedHandCursor;
    } else if (state.isOverview) {
        if (isInHeight && BandDrag::IsOnBand(state.scale, state.bandFirst, state.bandLast, position.x()))
            shape = Qt::OpenHandCursor;
    } else if (isInHeight && state.scale.HasX(position.x())) {
        shape = Qt::CrossCursor;
    }
    if (cursor().shape() != shape) setCursor(shape);
}

bool CReportGraph::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    ShowPointText(help->pos(), help->globalPos());
    return true;
}

void CReportGraph::ShowPointText(QPoint position, QPoint onScreen) {
    const PlotScale& scale = state.scale;
    const bool isInPlot =
        scale.HasX(position.x()) && position.y() >= scale.plot.Top() && position.y() <= scale.plot.bottom;
    if (!isInPlot || controller.Data().series.empty()) return QToolTip::hideText();
    const int frame = std::clamp(scale.FrameAt(position.x()), scale.rangeFirst, scale.rangeLast);
    QToolTip::showText(onScreen, ToQString(PointText(controller.Data().series, frame)), this);
}

void CReportGraph::CopyToClipboard(double factor) {
    if (state.isOverview) return;
    const WaitCursor wait;
    QGuiApplication::clipboard()->setImage(PlotCopy(controller.Data(), state, factor));
}

bool CReportGraph::SavePng(const std::wstring& path) const {
    QBuffer buffer;
    return PlotCopy(controller.Data(), state, 1).save(&buffer, "PNG") &&
           ReplaceFile(path, Bytes(buffer.data()));
}

bool CReportGraph::SaveSvg(const std::wstring& path) const {
    return ReplaceFile(path, Bytes(PlotSvg(controller.Data(), state)));
}

void CReportGraph::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (!state.isOverview) {
        menu->addAction(QStringLiteral("&Copy"), this, [this] { CopyToClipboard(); });
        menu->addAction(QStringLiteral("Copy at &double size"), this, [this] { CopyToClipboard(2); });
        menu->addSeparator();
    }
    menu->addAction(QStringLiteral("Save as &PNG..."), this, [this] { Save(false); });
    menu->addAction(QStringLiteral("Save as &SVG..."), this, [this] { Save(true); });
    menu->popup(event->globalPos());
}

void CReportGraph::Save(bool asSvg) {
    const FileKind kind =
        asSvg ? FileKind{L"Scalable pictures", {L"*.svg"}} : FileKind{L"Pictures", {L"*.png"}};
    const auto path = ChooseNewFile(this, L"Save plot", asSvg ? L"plot.svg" : L"plot.png", kind);
    if (!path) return;
    const bool saved = asSvg ? SaveSvg(*path) : SavePng(*path);
    if (saved) return;
    ShowMessage(this, QMessageBox::Critical, L"Could not save the plot",
                L"Could not write \"" + *path + L"\". Choose a folder that you may write to.");
}

}  // namespace Report
