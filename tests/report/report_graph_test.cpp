#include "report/report_graph.h"

#include "report/curve_layer.h"
#include "report/plot_colors.h"
#include "report/plot_copy.h"
#include "report/report_controller.h"
#include "report/rules/curve.h"
#include "tests/report/made_results.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QSvgRenderer>
#include <QToolTip>

#include <cmath>

namespace {

using Report::CReportGraph;

/// Pixels of exactly this colour.
int Count(const QImage& image, QColor color, QRect area = {}) {
    if (area.isNull()) area = image.rect();
    area &= image.rect();
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) count += image.pixel(x, y) == color.rgb();
    return count;
}

/// Whether there is a line of this colour, 3 pixels thick and 20 long but for the sign in its middle.
bool HasSample(const QImage& image, QColor color) {
    for (int y = 1; y + 1 < image.height(); ++y) {
        for (int x = 0; x + 20 <= image.width(); ++x) {
            const auto isFull = [&](int from) {
                return Count(image, color, QRect(x + from, y - 1, 6, 3)) == 18;
            };
            if (isFull(0) && isFull(14)) return true;
        }
    }
    return false;
}

QRect PlotRect(const CReportGraph& graph) {
    const Report::PlotGeometry& plot = graph.State().scale.plot;
    return QRect(plot.left, plot.Top(), plot.width + 1, plot.height + 1);
}

QImage Grab(CReportGraph& graph) {
    return graph.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// What is drawn column by column is what Qt draws line by line.
TEST(CurveLayer, PaintsWhatSingleLinesPaint) {
    const struct {
        const char* what;
        float (*value)(int);
    } kShapes[] = {
        {"noise", [](int i) { return static_cast<float>((i * 7919 + i % 1009 * (i % 97) * 31) % 101); }},
        {"waves", [](int i) { return 50 + 49 * std::sin(static_cast<float>(i) * 0.37F); }},
        {"slow waves", [](int i) { return 50 + 49 * std::sin(static_cast<float>(i) * 0.003F); }},
        {"steps", [](int i) { return i / 37 % 2 ? 80.0F : 20.0F; }},
        {"spikes", [](int i) { return i % 501 == 0 ? 100.0F : 3.0F; }},
    };
    for (const auto& shape : kShapes) {
        for (const int frames : {2, 3, 7, 60, 199, 700, 701, 702, 1001, 30'000}) {
            for (const QSize& size : {QSize(700, 250), QSize(333, 97), QSize(64, 700)}) {
                SCOPED_TRACE(testing::Message() << shape.what << ", " << frames << " in " << size.width());
                Report::PlotScale scale;
                scale.plot = {0, size.height(), size.width(), size.height()};
                scale.rangeLast = frames - 1;
                scale.values = {0, 100};
                Report::Series series;
                for (int i = 0; i < frames; ++i) series.values.push_back(shape.value(i));

                QImage lines(size + QSize(1, 1), QImage::Format_RGB32);
                lines.fill(Qt::white);
                QImage columns = lines.copy();
                {
                    QPainter painter(&lines);
                    painter.setPen(QPen(Report::CurveColor(0), 1));
                    for (int i = 1; i < frames; ++i) {
                        painter.drawLine(
                            scale.CurveX(i - 1), scale.CurveY(series.values[static_cast<std::size_t>(i - 1)]),
                            scale.CurveX(i), scale.CurveY(series.values[static_cast<std::size_t>(i)]));
                    }
                    // Qt leaves the end of some steep lines to the line that follows.
                    painter.drawPoint(scale.CurveX(frames - 1), scale.CurveY(series.values.back()));
                }
                Report::CurveLayer layer;
                layer.Draw({{0, series}}, scale, 1, false);
                QPainter painter(&columns);
                layer.LayOver(painter, {});
                painter.end();
                EXPECT_TRUE(lines == columns);
            }
        }
    }
}

TEST(ReportGraph, ColoursAndCurves) {
    const MadeResults results(100, {49});
    const Viewer viewer(results.Parameters());
    CReportGraph& overview = *viewer.dialog->Controller().Views().at(0);
    CReportGraph& detail = *viewer.dialog->Controller().Views().at(1);
    const QImage upper = Grab(overview);
    const QImage lower = Grab(detail);
    const QRect plot = PlotRect(detail);

    EXPECT_EQ(qRgb(255, 255, 255), lower.pixel(0, 0));
    for (const QImage& image : {upper, lower}) {
        EXPECT_GT(Count(image, QColor(200, 0, 0)), 300);
        EXPECT_GT(Count(image, QColor(0, 0, 200)), 300);
        EXPECT_EQ(0, Count(image, QColor(0, 100, 0))) << "the original has no result of its own";
        EXPECT_GT(Count(image, QColor(200, 50, 50)), 5) << "the bad frame";
    }
    EXPECT_GT(Count(upper, QColor(50, 0, 50)), 10'000);
    EXPECT_EQ(0, Count(lower, QColor(50, 0, 50)));
    EXPECT_GT(Count(lower, Report::kCursorColor, plot), plot.height() / 2) << "the cursor";

    // Every curve stays below the largest and above the smallest value, which touch the plot's edges.
    EXPECT_GT(Count(lower, QColor(0, 0, 200), QRect(plot.left(), plot.top(), plot.width(), 2)), 0);
    EXPECT_GT(Count(lower, QColor(200, 0, 0), QRect(plot.left(), plot.bottom() - 1, plot.width(), 2)), 0);
}

TEST(ReportGraph, HaloOnTheBandOnly) {
    const MadeResults results(100);
    const Viewer viewer(results.Parameters());
    CReportGraph& overview = *viewer.dialog->Controller().Views().at(0);
    const QImage image = Grab(overview);
    const QRect band = overview.State().Band();
    int lonely = 0;
    for (int y = band.top() + 2; y < band.bottom() - 1; ++y) {
        for (int x = band.left() + 2; x < band.right() - 1; ++x) {
            if (image.pixel(x, y) != qRgb(0, 0, 200)) continue;
            for (const QPoint& side : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)})
                lonely += image.pixel(QPoint(x, y) + side) == Report::kBandColor.rgb();
        }
    }
    EXPECT_EQ(0, lonely) << "a curve's pixel without white around it";
}

TEST(ReportGraph, GridSwitch) {
    const MadeResults results(100);
    const Viewer viewer(results.Parameters());
    CReportGraph& detail = *viewer.dialog->Controller().Views().at(1);
    auto* box = viewer.dialog->findChild<QCheckBox*>();
    ASSERT_TRUE(box->isChecked());
    const QRect plot = PlotRect(detail);
    const int columns = Count(Grab(detail), Report::kGridColor, plot);
    EXPECT_GT(columns, 1000);
    const int ends = Count(Grab(detail), Report::kAxisColor, plot);
    box->click();
    const QImage without = Grab(detail);
    EXPECT_EQ(0, Count(without, Report::kGridColor, plot));
    EXPECT_GE(Count(without, Report::kAxisColor, plot), ends) << "first and last line stay, and ticks come";
    const QRect tick(plot.left() + 1, plot.top() + 2, 2, plot.height() - 4);
    EXPECT_GT(Count(without, Report::kAxisColor, tick), 2);
    const QRect behind(plot.left() + 3, plot.top() + 2, 20, plot.height() - 4);
    EXPECT_EQ(0, Count(without, Report::kAxisColor, behind));
}

TEST(ReportGraph, MouseInTheDetailPlot) {
    const MadeResults results(100);
    const Viewer viewer(results.Parameters());
    CReportGraph& detail = *viewer.dialog->Controller().Views().at(1);
    const QRect plot = PlotRect(detail);
    const int y = plot.center().y();
    const auto at = [&](int frame) { return QPoint(detail.State().scale.FrameX(frame) + 2, y); };

    QTest::mouseMove(&detail, at(40));
    EXPECT_EQ(Qt::CrossCursor, detail.cursor().shape());
    QTest::mousePress(&detail, Qt::LeftButton, {}, at(40));
    EXPECT_EQ(40, viewer.Range().Current());
    EXPECT_EQ(25, viewer.Range().VisibleFirst()) << "no recentring";
    QTest::mouseMove(&detail, at(60));
    EXPECT_EQ(60, viewer.Range().Current());
    QTest::mouseMove(&detail, QPoint(detail.width() - 2, y));
    EXPECT_EQ(74, viewer.Range().Current()) << "beside the plot it stays in the range";
    QTest::mouseMove(&detail, at(50));
    QTest::mouseRelease(&detail, Qt::LeftButton, {}, at(50));
    QTest::mouseMove(&detail, at(30));
    EXPECT_EQ(50, viewer.Range().Current());

    QTest::mousePress(&detail, Qt::LeftButton, {}, QPoint(plot.left() - 3, y));
    QTest::mouseMove(&detail, at(30));
    EXPECT_EQ(50, viewer.Range().Current()) << "a press beside the plot is nothing";
    QTest::mouseRelease(&detail, Qt::LeftButton, {}, at(30));

    // The drag is over outside, though the button is held.
    QTest::mousePress(&detail, Qt::LeftButton, {}, at(40));
    QTest::mouseMove(&detail, QPoint(plot.center().x(), -5));
    QTest::mouseMove(&detail, at(60));
    EXPECT_EQ(40, viewer.Range().Current());
    QTest::mouseRelease(&detail, Qt::LeftButton, {}, at(60));
}

TEST(ReportGraph, DraggingTheBand) {
    const MadeResults results(100);
    const Viewer viewer(results.Parameters());
    CReportGraph& overview = *viewer.dialog->Controller().Views().at(0);
    const auto at = [&](int frame) {
        return QPoint(overview.State().scale.FrameX(frame), PlotRect(overview).center().y());
    };
    QTest::mouseMove(&overview, at(50));
    EXPECT_EQ(Qt::OpenHandCursor, overview.cursor().shape());
    QTest::mousePress(&overview, Qt::LeftButton, {}, at(50));
    EXPECT_EQ(49, viewer.Range().Current()) << "grabbing moves nothing";
    QTest::mouseMove(&overview, at(70));
    EXPECT_NEAR(69, viewer.Range().Current(), 1);
    EXPECT_EQ(49, viewer.Range().Width());
    QTest::mouseMove(&overview, at(99));
    QTest::mouseRelease(&overview, Qt::LeftButton, {}, at(99));
    EXPECT_EQ(99, viewer.Range().VisibleLast());
    const int current = viewer.Range().Current();
    QTest::mousePress(&overview, Qt::LeftButton, {}, at(10));
    QTest::mouseMove(&overview, at(20));
    QTest::mouseRelease(&overview, Qt::LeftButton, {}, at(20));
    EXPECT_EQ(current, viewer.Range().Current()) << "beside the band";
}

TEST(ReportGraph, ToolTip) {
    const MadeResults results(100);
    const Viewer viewer(results.Parameters());
    CReportGraph& detail = *viewer.dialog->Controller().Views().at(1);
    const QPoint place(detail.State().scale.FrameX(40) + 2, PlotRect(detail).center().y());
    QHelpEvent help(QEvent::ToolTip, place, detail.mapToGlobal(place));
    QApplication::sendEvent(&detail, &help);
    EXPECT_EQ("Frame 40\nFirst processed: 28.0000\nSecond processed: 48.0000",
              QToolTip::text().toStdString());
    QToolTip::hideText();
}

TEST(ReportGraph, Clipboard) {
    const MadeResults results(100, {49});
    const Viewer viewer(results.Parameters());
    CReportGraph& overview = *viewer.dialog->Controller().Views().at(0);
    CReportGraph& detail = *viewer.dialog->Controller().Views().at(1);
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

TEST(ReportGraph, ContextMenuAndFiles) {
    const MadeResults results(100, {49});
    const Viewer viewer(results.Parameters());
    for (CReportGraph* plot : viewer.dialog->Controller().Views()) {
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

    CReportGraph& detail = *viewer.dialog->Controller().Views().at(1);
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
    int reddish = 0;
    for (int y = 0; y < drawn.height(); ++y)
        for (int x = 0; x < drawn.width(); ++x)
            reddish += qRed(drawn.pixel(x, y)) > qBlue(drawn.pixel(x, y)) + 60;
    EXPECT_GT(reddish, 300);
    EXPECT_FALSE(detail.SavePng(path("missing/plot.png").toStdWString()));
    EXPECT_FALSE(detail.SaveSvg(path("missing/plot.svg").toStdWString()));
}

TEST(ReportGraph, AFinerScreen) {
    const MadeResults results(100, {49});
    const Report::ReportData data = Report::GatherData(results.Parameters());
    Report::PlotState state = Report::EmptyPlot(QSize(500, 250), QApplication::font());
    state.scale.rangeLast = 99;
    state.scale.values = data.values;
    for (const double factor : {1.0, 1.5, 2.0}) {
        SCOPED_TRACE(factor);
        const QImage copy = Report::PlotCopy(data, state, factor);
        EXPECT_EQ((QSizeF(state.size) * factor).toSize(), copy.size());
        // At 2 each pixel of a curve is one of a block of four.
        if (factor != 2) continue;
        const QRect plot(QPoint(state.scale.plot.left, state.scale.plot.Top()) * 2, QSize(100, 200));
        int thin = 0;
        for (int y = plot.top(); y < plot.bottom(); ++y) {
            for (int x = plot.left() + 2; x < plot.right(); ++x) {
                const auto is = [&](int dx) { return copy.pixel(x + dx, y) == qRgb(200, 0, 0); };
                thin += is(0) && !is(-1) && !is(1);
            }
        }
        EXPECT_EQ(0, thin);
    }
}

}  // namespace
