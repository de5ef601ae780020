#include "report/results_dialog.h"

#include "platform/qt/plain_label.h"
#include "report/hold_button.h"
#include "report/report_graph.h"
#include "report/show_results.h"
#include "tests/platform/qt/opened_files.h"
#include "tests/report/made_results.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSlider>
#include <QTimer>

namespace {

using Report::CReportGraph;

struct Numbers {
    int first, last, current;
    friend bool operator==(const Numbers&, const Numbers&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Numbers& numbers) {
        return out << numbers.first << ".." << numbers.last << " at " << numbers.current;
    }
};

/// What the window shows, after looking that its controls say the same.
Numbers Shown(const Viewer& viewer) {
    const Report::FrameRange& range = viewer.Range();
    EXPECT_EQ(QString::number(range.Current()), viewer.Find<QLineEdit>("Current frame")->text());
    EXPECT_EQ(range.Current(), viewer.Find<QSlider>("Video slide")->value());
    const auto& plots = viewer.dialog->Plots();
    EXPECT_EQ(range.VisibleFirst(), plots.at(1)->State().scale.rangeFirst);
    EXPECT_EQ(range.VisibleLast(), plots.at(1)->State().scale.rangeLast);
    const bool isOverview = plots.at(0)->IsOverview();
    EXPECT_EQ(isOverview ? range.FirstFrame() : range.VisibleFirst(), plots.at(0)->State().scale.rangeFirst);
    EXPECT_EQ(isOverview ? range.LastFrame() : range.VisibleLast(), plots.at(0)->State().scale.rangeLast);
    for (const CReportGraph* plot : plots) EXPECT_EQ(range.Current(), plot->State().cursor);
    return {range.VisibleFirst(), range.VisibleLast(), range.Current()};
}

TEST(ResultsDialog, OpensInTheMiddle) {
    const struct {
        int frames;
        Numbers shown;
        bool hasOverview;
        const char* count;
    } kCases[] = {{1, {0, 0, 0}, false, "1 frame"},
                  {3, {1, 2, 1}, false, "2 frames"},
                  {4, {1, 2, 1}, true, "2 frames"},
                  {5000, {1999, 2999, 2499}, true, "1001 frames"}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.frames);
        const MadeResults results(c.frames);
        const Viewer viewer(results.Parameters());
        EXPECT_EQ(c.shown, Shown(viewer));
        viewer.Find<PlainLabel>(c.count);
        CReportGraph& upper = *viewer.dialog->Plots().at(0);
        EXPECT_EQ(c.hasOverview, upper.IsOverview());
        EXPECT_FALSE(viewer.dialog->Plots().at(1)->IsOverview());
        if (c.hasOverview) continue;
        const Report::PlotGeometry& plot = upper.State().scale.plot;
        QTest::mouseClick(&upper, Qt::LeftButton, {}, QPoint(plot.Right(), plot.Top() + 9));
        EXPECT_EQ((Numbers{c.shown.first, c.shown.last, c.shown.last}), Shown(viewer)) << "a detail plot";
    }
}

TEST(ResultsDialog, EveryControlMoves) {
    const MadeResults results(100, {10, 40, 60});
    const Viewer viewer(results.Parameters());
    QWidget* dialog = viewer.dialog.get();
    const auto click = [&viewer](const char* name) { viewer.Click(name); };
    const auto key = [&](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : dialog, key, modifiers);
    };
    auto* slider = viewer.Find<QSlider>("Video slide");
    EXPECT_TRUE(slider->hasFocus());

    const struct {
        const char* what;
        std::function<void()> act;
        Numbers shown;
    } kSteps[] = {
        {"opened", [] {}, {25, 74, 49}},
        {">", [&] { click("Next frame"); }, {26, 75, 50}},
        {"<", [&] { click("Previous frame"); }, {25, 74, 49}},
        {"right", [&] { key(Qt::Key_Right); }, {26, 75, 50}},
        {"left", [&] { key(Qt::Key_Left); }, {25, 74, 49}},
        {"+", [&] { click("Wider control window"); }, {24, 75, 49}},
        {"-", [&] { click("Narrower control window"); }, {25, 74, 49}},
        {"wheel away", [&] { Wheel(*dialog, 120); }, {24, 74, 49}},
        {"wheel to the user, over the slider", [&] { Wheel(*slider, -240); }, {25, 73, 49}},
        {"wheel over a plot", [&] { Wheel(*viewer.dialog->Plots().at(1), 120); }, {25, 74, 49}},
        {"next bad frame", [&] { click("Next bad frame"); }, {36, 85, 60}},
        {"none behind it", [&] { click("Next bad frame"); }, {36, 85, 60}},
        {"none behind it, by key", [&] { key(Qt::Key_Right, Qt::ControlModifier); }, {36, 85, 60}},
        {"previous bad frame", [&] { click("Previous bad frame"); }, {16, 65, 40}},
        {"by key", [&] { key(Qt::Key_Left, Qt::ControlModifier); }, {0, 49, 10}},
        {"and back", [&] { key(Qt::Key_Right, Qt::ControlModifier); }, {16, 65, 40}},
        {"slider", [&] { slider->setValue(99); }, {50, 99, 99}},
        {"> at the end", [&] { click("Next frame"); }, {50, 99, 99}},
        {"slider to the start", [&] { slider->setValue(0); }, {0, 49, 0}},
        {"< at the start", [&] { click("Previous frame"); }, {0, 49, 0}},
        {"page keys are the slider's own", [&] { slider->setFocus(), key(Qt::Key_PageUp); }, {0, 49, 4}},
    };
    for (const auto& step : kSteps) {
        step.act();
        EXPECT_EQ(step.shown, Shown(viewer)) << step.what;
    }

    // A read-only field swallows no key, and the space key gives a button's command.
    auto* field = viewer.Find<QLineEdit>("Value, first processed");
    field->setFocus();
    key(Qt::Key_Right);
    EXPECT_EQ((Numbers{0, 49, 5}), Shown(viewer));
    auto* wider = viewer.Find<QAbstractButton>("Wider control window");
    wider->setFocus();
    key(Qt::Key_Space);
    EXPECT_EQ((Numbers{0, 51, 5}), Shown(viewer));
}

TEST(ResultsDialog, HoldingRepeatsFasterAndFaster) {
    const MadeResults results(5000);
    const Viewer viewer(results.Parameters());
    auto* next = viewer.Find<Report::HoldButton>("Next frame");
    const QSignalSpy commands(next, &Report::HoldButton::Command);

    QTest::mousePress(next, Qt::LeftButton);
    EXPECT_EQ(0, commands.count());
    ASSERT_TRUE(QTest::qWaitFor([&] { return commands.count() >= 6; }));
    const auto count = commands.count();
    QTest::mouseRelease(next, Qt::LeftButton);
    QTest::qWait(150);
    EXPECT_EQ(count, commands.count()) << "nothing runs on, and the release isn't another command";
    EXPECT_EQ(2499 + static_cast<int>(count), viewer.Range().Current());

    QTest::mouseClick(next, Qt::LeftButton);
    EXPECT_EQ(count + 1, commands.count()) << "a short press counts once";
    next->click();
    EXPECT_EQ(count + 2, commands.count()) << "so does a screen reader's";
}

TEST(ResultsDialog, Texts) {
    const MadeResults results(100, {50});
    const Viewer viewer(results.Parameters());
    EXPECT_EQ("Tolvane - Results visualization", viewer.dialog->windowTitle().toStdString());
    const ControlText kTexts[] = {
        {"Previous frame",
         "Go to the previous frame [left arrow]\n(you can hold button to go through frames)"},
        {"Next frame", "Go to the next frame [right arrow]\n(you can hold button to go through frames)"},
        {"Wider control window", "Increase radius of control window\n(you can hold button to increase it)"},
        {"Narrower control window",
         "Decrease radius of control window\n(you can hold button to decrease it)"},
        {"Previous bad frame", "Go to previous bad frame [Ctrl + left arrow]"},
        {"Next bad frame", "Go to next bad frame [Ctrl + right arrow]"},
        {"Copy lower plot", "Copy lower plot to clipboard [Ctrl + G]"},
        {"Show frame", "Show current frame"},
        {"Original", "<p>/clips/0&lt;b&gt;&amp;c.yuv</p>"},
        {"Second processed", "<p>/clips/2&lt;b&gt;&amp;c.yuv</p>"},
        {"Bad frames", ""},
        {"Value, original", "Needs results of the file \"Original\""},
        {"Value, first processed", ""},
    };
    CheckTexts(viewer, *viewer.dialog, kTexts, "cfgv");
    for (const char* name : {"Original", "First processed", "Second processed", "Bad frames"})
        EXPECT_TRUE(viewer.Find<PlainLabel>(name)->isEnabled()) << name;
    EXPECT_EQ("Frame 49 of 0 to 99. First processed 23.0000. Second processed 43.0000.",
              viewer.dialog->Plots().at(0)->accessibleDescription().toStdString());
}

TEST(ResultsDialog, WithoutResults) {
    MadeResults results(0);
    results.files.erase(2);
    const Viewer viewer(results.Parameters());
    const ControlText kTexts[] = {
        {"Second processed", "Needs the file \"Second processed\" in the run"},
        {"Bad frames", "Needs a run with \"Save \"bad frames\"\""},
        {"Next bad frame",
         "Go to next bad frame [Ctrl + right arrow]\nNeeds a run with \"Save \"bad frames\"\""},
        {"Value, first processed", "Needs results of the file \"First processed\""},
    };
    CheckTexts(viewer, *viewer.dialog, kTexts, "cfgv");
    for (const ControlText& text : kTexts)
        EXPECT_FALSE(viewer.Find<QWidget>(text.name)->isEnabled()) << text.name;
    EXPECT_TRUE(viewer.Find<PlainLabel>("First processed")->isEnabled()) << "it is in the run";
    EXPECT_EQ("", viewer.Find<QLineEdit>("Value, first processed")->text().toStdString());
    viewer.Press(Qt::CTRL | Qt::Key_Right);
    viewer.Click("Wider control window");
    EXPECT_EQ((Numbers{0, 0, 0}), Shown(viewer));
    EXPECT_FALSE(viewer.dialog->grab().isNull());
}

TEST(ResultsDialog, IsModalHasHelpAndClosesByKey) {
    const MadeResults results(100);
    OpenedFiles opened;
    for (const QKeyCombination key : {QKeyCombination(Qt::Key_Escape), Qt::CTRL | Qt::Key_W}) {
        bool wasModal = false;
        bool hasClosed = false;
        QTimer::singleShot(0, [&] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_TRUE(dialog);
            wasModal = dialog->isModal();
            EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
            QTest::keyClick(dialog, Qt::Key_F1);
            EXPECT_EQ("viewer.html", opened.urls.value(0).fileName().toStdString());
            opened.urls.clear();
            QTest::keyClick(dialog, key.key(), key.keyboardModifiers());
            hasClosed = !QApplication::activeModalWidget();
            if (!hasClosed) dialog->close();
        });
        ShowResults(nullptr, results.Parameters());
        EXPECT_TRUE(wasModal);
        EXPECT_TRUE(hasClosed);
        EXPECT_FALSE(QApplication::activeModalWidget());
    }
}

}  // namespace
