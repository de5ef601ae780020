#include "report/report_graph.h"

#include "report/curve_layer.h"
#include "report/plot_colors.h"
#include "report/plot_copy.h"
#include "report/report_controller.h"
#include "report/rules/curve.h"
#include "tests/report/made_results.h"
#include "tests/temporary_directory.h"

#include <QSvgRenderer>

#include <cmath>

namespace {

using Report::CReportGraph;

/// How many places of an area are as asked for.
template <typename Is>
int CountOf(QRect area, Is is) {
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) count += is(x, y) ? 1 : 0;
    return count;
}

/// Pixels of exactly this colour.
int Count(const QImage& image, QColor color, QRect area = {}) {
    const QRect inside = area.isNull() ? image.rect() : area & image.rect();
    return CountOf(inside, [&](int x, int y) { return image.pixel(x, y) == color.rgb(); });
}

/// Whether there is a line of this colour, 3 pixels thick and 20 long but for the sign in its middle.
bool HasSample(const QImage& image, QColor color) {
    const auto isFull = [&](int x, int y) { return Count(image, color, QRect(x, y - 1, 6, 3)) == 18; };
    return CountOf(image.rect().adjusted(0, 1, -20, -1),
                   [&](int x, int y) { return isFull(x, y) && isFull(x + 14, y); }) > 0;
}

bool HasText(const QImage& image, const QRect& place) {
    return CountOf(place, [&](int x, int y) { return qGray(image.pixel(x, y)) < 110; }) > 0;
}

QRect PlotRect(const Report::PlotState& state) {
    const Report::PlotGeometry& plot = state.scale.plot;
    return QRect(plot.left, plot.Top(), plot.width + 1, plot.height + 1);
}

/// A plot without its curves.
QImage Base(const Report::ReportData& data, const Report::PlotState& state) {
    QImage image(state.size, QImage::Format_RGB32);
    QPainter painter(&image);
    Report::DrawPlotBase(painter, data, state);
    return image;
}

QImage Grab(CReportGraph& graph) {
    return graph.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

struct ReportGraph : testing::Test {
    const MadeResults results{100, {49}};
    const Viewer viewer{results.Parameters()};
    CReportGraph& overview = *viewer.dialog->Plots().at(0);
    CReportGraph& detail = *viewer.dialog->Plots().at(1);
};

// What is drawn column by column is what Qt draws line by line.
TEST(CurveLayer, PaintsWhatSingleLinesPaint) {
    const std::pair<const char*, float (*)(int)> kShapes[] = {
        {"noise", [](int i) { return static_cast<float>((i * 7919 + i % 1009 * (i % 97) * 31) % 101); }},
        {"waves", [](int i) { return 50 + 49 * std::sin(static_cast<float>(i) * 0.37F); }},
        {"slow waves", [](int i) { return 50 + 49 * std::sin(static_cast<float>(i) * 0.003F); }},
        {"steps", [](int i) { return i / 37 % 2 ? 80.0F : 20.0F; }},
        {"spikes", [](int i) { return i % 501 == 0 ? 100.0F : 3.0F; }},
    };
    for (const auto& [what, value] : kShapes) {
        for (const int frames : {2, 3, 7, 60, 199, 700, 701, 702, 1001, 30'000}) {
            for (const QSize& size : {QSize(700, 250), QSize(333, 97), QSize(64, 700)}) {
                SCOPED_TRACE(testing::Message() << what << ", " << frames << " in " << size.width());
                Report::PlotScale scale;
                scale.plot = {0, size.height(), size.width(), size.height()};
                scale.rangeLast = frames - 1;
                scale.values = {0, 100};
                Report::Series series;
                for (int i = 0; i < frames; ++i) series.values.push_back(value(i));

                QImage lines(size + QSize(1, 1), QImage::Format_RGB32);
                lines.fill(Qt::white);
                QImage columns = lines.copy();
                QPainter painter(&lines);
                painter.setPen(QPen(Report::CurveColor(0), 1));
                const auto point = [&](int i) {
                    return QPoint(scale.CurveX(i), scale.CurveY(series.values[static_cast<std::size_t>(i)]));
                };
                for (int i = 1; i < frames; ++i) painter.drawLine(point(i - 1), point(i));
                painter.drawPoint(
                    point(frames - 1));  // Qt leaves the end of some steep lines to the next one
                painter.end();
                Report::CurveLayer layer;
                layer.Draw({{0, series}}, scale, 1, false);
                painter.begin(&columns);
                layer.LayOver(painter, {});
                painter.end();
                EXPECT_TRUE(lines == columns);
            }
        }
    }
}

TEST_F(ReportGraph, ColoursAndCurves) {
    const QImage upper = Grab(overview);
    const QImage lower = Grab(detail);
    const QRect plot = PlotRect(detail.State());
    for (const QImage& image : {upper, lower}) {
        EXPECT_GT(Count(image, QColor(200, 0, 0)), 300);
        EXPECT_GT(Count(image, QColor(0, 0, 200)), 300);
        EXPECT_EQ(0, Count(image, QColor(0, 100, 0))) << "the original has no result of its own";
    }
    EXPECT_GT(Count(lower, Report::kCursorColor, plot), plot.height() / 2) << "the cursor";
    // Every curve stays below the largest and above the smallest value, which touch the plot's edges.
    EXPECT_GT(Count(lower, QColor(0, 0, 200), QRect(plot.left(), plot.top(), plot.width(), 2)), 0);
    EXPECT_GT(Count(lower, QColor(200, 0, 0), QRect(plot.left(), plot.bottom() - 1, plot.width(), 2)), 0);

    // On the band, and only there, white stands around a curve.
    const QRect band = overview.State().Band();
    const auto isBlue = [&](int x, int y) { return upper.pixel(x, y) == qRgb(0, 0, 200); };
    const auto isBand = [&](int x, int y) { return upper.pixel(x, y) == Report::kBandColor.rgb(); };
    const QRect inBand = band.adjusted(2, 2, -2, -2);
    EXPECT_GT(CountOf(inBand, isBlue), 100);
    EXPECT_EQ(0, CountOf(inBand, [&](int x, int y) {
                  return isBlue(x, y) &&
                         (isBand(x + 1, y) || isBand(x - 1, y) || isBand(x, y + 1) || isBand(x, y - 1));
              }));
    const QImage bare = Base(viewer.dialog->Controller().Data(), overview.State());
    QRect beside = PlotRect(overview.State());
    beside.setRight(band.left() - 1);
    EXPECT_EQ(0, CountOf(beside, [&](int x, int y) {
                  const QRgb pixel = upper.pixel(x, y);
                  return pixel != bare.pixel(x, y) && pixel != qRgb(200, 0, 0) && pixel != qRgb(0, 0, 200);
              }));
}

// Frames 10 to 30 with the cursor at 17 and values from 20 to 60, looked at where the labels have to stand.
TEST(PlotPicture, AxesAndMarks) {
    const MadeResults results(40, {5, 24, 35});
    Report::ReportData data = Report::GatherData(results.Parameters());
    Report::PlotState state = Report::EmptyPlot(QSize(700, 250), QApplication::font());
    state.scale.rangeFirst = 10;
    state.scale.rangeLast = 30;
    state.scale.values = {20, 60};
    state.cursor = 17;
    Report::PlotState copied = state;
    copied.cursor.reset();
    Report::ReportData nothing = data;
    nothing.series.clear();
    const QImage shown = Base(data, state);
    const QImage copy = Base(data, copied);
    const QImage empty = Base(nothing, state);

    const Report::PlotGeometry& plot = state.scale.plot;
    const int cw = state.charWidth;
    const int th = state.textHeight;
    const int below = plot.bottom + 4;
    const int x = state.scale.FrameX(17);
    const int mark = state.scale.FrameX(24);
    const std::tuple<const char*, QRect, bool, bool, bool> kTexts[] = {
        {"first frame", {plot.left, below, 2 * cw, th}, true, true, false},
        {"current frame", {x, below, 2 * cw, th}, true, false, false},
        {"last frame", {plot.Right(), below, 2 * cw, th}, true, true, false},
        {"left of it", {plot.left + 3 * cw, below + 1, x - plot.left - 4 * cw, th}, false, false, false},
        {"right of it", {x + 4 * cw, below + 1, plot.Right() - x - 9 * cw, th}, false, false, false},
        {"\"Frame\"", {plot.Right() - 5 * cw, below + th, 5 * cw, th}, true, true, true},
        {"smallest value", {plot.left - 7 * cw, plot.bottom - th / 2, 7 * cw - 2, th}, true, true, false},
        {"largest value", {plot.left - 7 * cw, plot.Top() - th / 2, 7 * cw - 2, th}, true, true, false},
        {"metric", {2, plot.bottom - plot.height / 2 - 20, th, 40}, true, true, true},
        {"above its name", {2, plot.Top(), th, 10}, false, false, false},
    };
    for (const auto& [what, place, inShown, inCopy, inEmpty] : kTexts) {
        SCOPED_TRACE(what);
        EXPECT_EQ(inShown, HasText(shown, place));
        EXPECT_EQ(inCopy, HasText(copy, place));
        EXPECT_EQ(inEmpty, HasText(empty, place));
    }
    EXPECT_EQ(plot.height + 1, Count(shown, Report::kCursorColor, QRect(x, plot.Top(), 1, plot.height + 1)));
    EXPECT_EQ(0, Count(copy, Report::kCursorColor));
    for (const QPoint& corner : {QPoint(plot.left, plot.Top()), QPoint(plot.Right(), plot.bottom)})
        EXPECT_EQ(Report::kAxisColor.rgb(), empty.pixel(corner));
    EXPECT_GT(Count(empty, Report::kQuietPlotTextColor, PlotRect(state)), 5) << "\"No results\"";

    // A number that is too long for the margin keeps all its digits.
    Report::PlotState large = copied;
    large.scale.rangeLast = 100'000'000;
    EXPECT_TRUE(HasText(Base(data, large), QRect(plot.Right() - cw, below, cw, th)));

    // One triangle: the marks of frames beside the range are left out.
    for (const QPoint& at : {QPoint(mark, plot.bottom), QPoint(mark - 2, below), QPoint(mark + 2, below)})
        EXPECT_EQ(Report::kBadFrameMarkColor.rgb(), shown.pixel(at));
    EXPECT_EQ(Count(shown, Report::kBadFrameMarkColor, QRect(mark - 2, plot.bottom, 5, 5)),
              Count(shown, Report::kBadFrameMarkColor));

    state.isOverview = true;
    state.bandFirst = 14;
    state.bandLast = 20;
    const QRect band(QPoint(state.scale.FrameX(14), plot.bottom - 2),
                     QPoint(state.scale.FrameX(20), plot.bottom - 2));
    const QImage overview = Base(data, state);
    EXPECT_EQ(band.width() - 1, Count(overview, Report::kBandColor, band)) << "but for the cursor";
    EXPECT_EQ(band.width() - 1, Count(overview, Report::kBandColor, band.adjusted(-9, 0, 9, 0)));
}

TEST_F(ReportGraph, GridSwitchAndToolTip) {
    const QRect plot = PlotRect(detail.State());
    EXPECT_GT(Count(Grab(detail), Report::kGridColor, plot), 1000);
    viewer.Find<QCheckBox>("Show grid")->click();
    const QImage without = Grab(detail);
    EXPECT_EQ(0, Count(without, Report::kGridColor, plot));
    for (const int y : {plot.top(), plot.bottom()})
        EXPECT_GT(Count(without, Report::kAxisColor, QRect(plot.left(), y, plot.width(), 1)),
                  plot.width() / 2);
    const QRect ticks(plot.left() + 1, plot.top() + 2, 2, plot.height() - 4);
    EXPECT_GT(Count(without, Report::kAxisColor, ticks), 2);
    EXPECT_EQ(0, Count(without, Report::kAxisColor, ticks.translated(2, 0)));

    const QPoint place(detail.State().scale.FrameX(40) + 2, plot.center().y());
    QHelpEvent help(QEvent::ToolTip, place, detail.mapToGlobal(place));
    QApplication::sendEvent(&detail, &help);
    EXPECT_EQ("Frame 40\nFirst processed: 28.0000\nSecond processed: 48.0000",
              QToolTip::text().toStdString());
    QToolTip::hideText();
}

TEST_F(ReportGraph, Dragging) {
    const int y = PlotRect(detail.State()).center().y();
    const auto in = [y](const CReportGraph& plot, int frame) {
        return QPoint(plot.State().scale.FrameX(frame) + 2, y);
    };
    const QPoint outside(PlotRect(detail.State()).center().x(), -5);
    // Pressed at the first point and released at the last; the current and the first frame behind that.
    const std::tuple<const char*, CReportGraph&, std::vector<QPoint>, int, int> kCases[] = {
        {"a press", detail, {in(detail, 40)}, 40, 25},
        {"a drag", detail, {in(detail, 40), in(detail, 60)}, 60, 25},
        {"it stays in the range", detail, {in(detail, 40), QPoint(detail.width() - 2, y)}, 74, 25},
        {"beside the plot", detail, {QPoint(PlotRect(detail.State()).left() - 3, y), in(detail, 40)}, 49, 25},
        {"it ends outside", detail, {in(detail, 40), outside, in(detail, 60)}, 40, 25},
        {"grabbing moves nothing", overview, {in(overview, 50)}, 49, 25},
        {"the band", overview, {in(overview, 50), in(overview, 70)}, 69, 45},
        {"to the end", overview, {in(overview, 50), in(overview, 90)}, 89, 50},
        {"beside the band", overview, {in(overview, 10), in(overview, 20)}, 49, 25},
        {"it ends outside, too", overview, {in(overview, 50), outside, in(overview, 70)}, 49, 25},
    };
    for (const auto& [what, plot, way, current, first] : kCases) {
        viewer.dialog->Controller().SetCurrent(49, true);
        QTest::mousePress(&plot, Qt::LeftButton, {}, way.front());
        for (const QPoint& place : way) QTest::mouseMove(&plot, place);
        QTest::mouseRelease(&plot, Qt::LeftButton, {}, way.back());
        QCursor::setPos(0, 0);
        QTest::mouseMove(&plot, in(plot, 55));  // the button is up
        EXPECT_NEAR(current, viewer.Range().Current(), &plot == &overview ? 1 : 0) << what;
        EXPECT_NEAR(first, viewer.Range().VisibleFirst(), &plot == &overview ? 1 : 0) << what;
        EXPECT_EQ(49, viewer.Range().Width());
        EXPECT_EQ(&plot == &overview ? Qt::OpenHandCursor : Qt::CrossCursor, plot.cursor().shape()) << what;
    }
}

TEST_F(ReportGraph, Clipboard) {
    QGuiApplication::clipboard()->clear();
    overview.CopyToClipboard();
    EXPECT_TRUE(QGuiApplication::clipboard()->image().isNull()) << "the overview doesn't answer";

    const QImage before = Grab(detail);
    viewer.Press(Qt::CTRL | Qt::Key_G);
    const QImage copy = QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(detail.size(), copy.size());
    EXPECT_EQ(0, Count(copy, Report::kCursorColor)) << "no cursor";
    EXPECT_GT(Count(copy, Report::kStampColor), 20);
    EXPECT_TRUE(HasSample(copy, QColor(200, 0, 0)));
    EXPECT_TRUE(HasSample(copy, QColor(0, 0, 200)));
    EXPECT_FALSE(HasSample(before, QColor(0, 0, 200))) << "no legend in the window";
    EXPECT_EQ(0, Count(copy, QColor(0, 100, 0))) << "no entry without a curve";
    EXPECT_TRUE(before == Grab(detail)) << "the screen's picture is as it was";
    EXPECT_EQ(nullptr, QGuiApplication::overrideCursor());

    detail.CopyToClipboard(2);
    EXPECT_EQ(detail.size() * 2, QGuiApplication::clipboard()->image().size());
}

TEST_F(ReportGraph, ContextMenuAndFiles) {
    for (CReportGraph* plot : viewer.dialog->Plots()) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(50, 50), plot->mapToGlobal(QPoint(50, 50)));
        QApplication::sendEvent(plot, &event);
        auto* menu = plot->findChild<QMenu*>();
        ASSERT_TRUE(menu);
        QStringList texts;
        for (const QAction* action : menu->actions()) texts.append(action->text().remove(u'&'));
        EXPECT_EQ(plot->IsOverview() ? "Save as PNG...|Save as SVG..."
                                     : "Copy|Copy at double size||Save as PNG...|Save as SVG...",
                  texts.join(u'|').toStdString());
        menu->close();
    }

    const TemporaryDirectory directory;
    const auto path = [&directory](const char* name) { return QString::fromStdString(directory.Path(name)); };
    ASSERT_TRUE(detail.SavePng(path("plot.png").toStdWString()));
    EXPECT_EQ(detail.size(), QImage(path("plot.png")).size());
    ASSERT_TRUE(detail.SaveSvg(path("plot.svg").toStdWString()));
    QSvgRenderer svg(path("plot.svg"));
    ASSERT_TRUE(svg.isValid());
    EXPECT_EQ(QRectF(detail.rect()), svg.viewBoxF());
    QImage drawn(detail.size(), QImage::Format_RGB32);
    drawn.fill(Qt::green);
    QPainter painter(&drawn);
    svg.render(&painter);
    painter.end();
    EXPECT_EQ(0, Count(drawn, Qt::green));
    const auto isReddish = [&](int x, int y) {
        return qRed(drawn.pixel(x, y)) > qBlue(drawn.pixel(x, y)) + 60;
    };
    EXPECT_GT(CountOf(drawn.rect(), isReddish), 300);
    EXPECT_FALSE(detail.SavePng(path("missing/plot.png").toStdWString()));
    EXPECT_FALSE(detail.SaveSvg(path("missing/plot.svg").toStdWString()));
}

TEST(PlotPicture, AFinerScreen) {
    const MadeResults results(100, {49});
    const Report::ReportData data = Report::GatherData(results.Parameters());
    Report::PlotState state = Report::EmptyPlot(QSize(500, 250), QApplication::font());
    state.scale.rangeLast = 99;
    state.scale.values = data.values;
    EXPECT_EQ(QSize(750, 375), Report::PlotCopy(data, state, 1.5).size());
    // At 2 each pixel of a curve is one of a block of four.
    const QImage copy = Report::PlotCopy(data, state, 2);
    ASSERT_EQ(QSize(1000, 500), copy.size());
    const QRect plot(PlotRect(state).topLeft() * 2, PlotRect(state).size() * 2);
    const auto is = [&](int x, int y) { return copy.pixel(x, y) == qRgb(200, 0, 0); };
    const QRect inside = plot.adjusted(2, 0, -1, -1);
    EXPECT_GT(CountOf(inside, is), 100);
    EXPECT_EQ(0, CountOf(inside, [&](int x, int y) { return is(x, y) && !is(x - 1, y) && !is(x + 1, y); }));
}

}  // namespace
