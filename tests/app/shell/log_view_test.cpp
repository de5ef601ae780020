#include "app/shell/log_view.h"
#include "tests/platform/qt/user.h"

namespace {

struct LogViewTest : testing::Test {
    LogViewTest() {
        view.resize(300, 150);
        view.show();
    }
    int Extent() {
        QApplication::processEvents();
        return view.horizontalScrollBar()->maximum();
    }
    LogView view;
};

TEST_F(LogViewTest, WidensToTheWidestLineAndStaysWide) {
    view.Append({QStringLiteral("short")});
    EXPECT_EQ(0, Extent());
    view.Append({QString(500, u'w')});
    const int wide = Extent();
    EXPECT_GE(wide, view.fontMetrics().horizontalAdvance(QString(500, u'w')) - 300);
    view.Append({QStringLiteral("short again")});
    EXPECT_EQ(wide, Extent());
}

TEST_F(LogViewTest, CopiesSelectedLinesLetterForLetter) {
    view.Append({QStringLiteral("a<b>.yuv"), QStringLiteral("\"b & c\"")});
    view.activateWindow();
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ("\"b & c\"", QApplication::clipboard()->text().toStdString());
    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ("a<b>.yuv\n\"b & c\"\n", QApplication::clipboard()->text().toStdString());
}

TEST_F(LogViewTest, TakesVeryManyLinesAndShowsTheLast) {
    const QStringList lines(5000, QStringLiteral("Failed to convert a frame"));
    QElapsedTimer time;
    time.start();
    for (int i = 0; i < 40; ++i) {
        view.Append(lines);
        QApplication::processEvents();
    }
    EXPECT_EQ(200000, view.Lines().size());
    const QModelIndex last = view.model()->index(199999, 0);
    EXPECT_EQ(last, view.currentIndex());
    EXPECT_TRUE(view.viewport()->rect().contains(view.visualRect(last).center()));
    EXPECT_LT(time.elapsed(), 20000);  // a layout of every line anew each time would take minutes
}

}  // namespace
