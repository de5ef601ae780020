#include "report/results_dialog.h"

#include "platform/qt/plain_label.h"
#include "report/hold_button.h"
#include "report/report_graph.h"
#include "report/show_results.h"
#include "tests/platform/qt/opened_files.h"
#include "tests/report/made_results.h"

namespace {

using Report::CReportGraph;

using Numbers = std::array<int, 3>;  // first and last visible frame, and the current one

/// What the window shows, after looking that its controls say the same.
Numbers Shown(const Viewer& viewer) {
    const Report::FrameRange& range = viewer.Range();
    EXPECT_EQ(QString::number(range.Current()), viewer.Find<QLineEdit>("Current frame")->text());
    EXPECT_EQ(range.Current(), viewer.Find<QSlider>("Video slide")->value());
    const auto& plots = viewer.dialog->Plots();
    EXPECT_EQ(range.VisibleFirst(), plots.at(1)->State().scale.rangeFirst);
    EXPECT_EQ(range.VisibleLast(), plots.at(1)->State().scale.rangeLast);
    const bool isWhole = plots.at(0)->IsOverview();
    EXPECT_EQ(isWhole ? range.FirstFrame() : range.VisibleFirst(), plots.at(0)->State().scale.rangeFirst);
    EXPECT_EQ(isWhole ? range.LastFrame() : range.VisibleLast(), plots.at(0)->State().scale.rangeLast);
    for (const CReportGraph* plot : plots) EXPECT_EQ(range.Current(), plot->State().cursor);
    return {range.VisibleFirst(), range.VisibleLast(), range.Current()};
}

TEST(ResultsDialog, OpensInTheMiddle) {
    const std::tuple<int, Numbers, bool, const char*> kCases[] = {
        {1, {0, 0, 0}, false, "1 frame"},
        {3, {1, 2, 1}, false, "2 frames"},
        {4, {1, 2, 1}, true, "2 frames"},
        {5000, {1999, 2999, 2499}, true, "1001 frames"}};
    for (const auto& [frames, shown, hasOverview, count] : kCases) {
        SCOPED_TRACE(frames);
        const MadeResults results(frames);
        const Viewer viewer(results.Parameters());
        EXPECT_EQ(shown, Shown(viewer));
        viewer.Find<PlainLabel>(count);
        CReportGraph& upper = *viewer.dialog->Plots().at(0);
        EXPECT_EQ(hasOverview, upper.IsOverview());
        EXPECT_FALSE(viewer.dialog->Plots().at(1)->IsOverview());
        if (hasOverview) continue;
        const Report::PlotGeometry& plot = upper.State().scale.plot;
        QTest::mouseClick(&upper, Qt::LeftButton, {}, QPoint(plot.Right(), plot.Top() + 9));
        EXPECT_EQ((Numbers{shown[0], shown[1], shown[1]}), Shown(viewer)) << "a detail plot";
    }
}

TEST(ResultsDialog, EveryControlMoves) {
    const MadeResults results(100, {10, 40, 60});
    const Viewer viewer(results.Parameters());
    QWidget* dialog = viewer.dialog.get();
    const auto click = [&viewer](const char* name) { viewer.Click(name); };
    const auto key = [&viewer](QKeyCombination key) { viewer.Press(key); };
    auto* slider = viewer.Find<QSlider>("Video slide");
    EXPECT_TRUE(slider->hasFocus());

    const std::tuple<const char*, std::function<void()>, Numbers> kSteps[] = {
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
        {"none behind it, by key", [&] { key(Qt::CTRL | Qt::Key_Right); }, {36, 85, 60}},
        {"previous bad frame", [&] { click("Previous bad frame"); }, {16, 65, 40}},
        {"by key", [&] { key(Qt::CTRL | Qt::Key_Left); }, {0, 49, 10}},
        {"and back", [&] { key(Qt::CTRL | Qt::Key_Right); }, {16, 65, 40}},
        {"slider", [&] { slider->setValue(99); }, {50, 99, 99}},
        {"> at the end", [&] { click("Next frame"); }, {50, 99, 99}},
        {"slider to the start", [&] { slider->setValue(0); }, {0, 49, 0}},
        {"< at the start", [&] { click("Previous frame"); }, {0, 49, 0}},
        {"page keys are the slider's own", [&] { slider->setFocus(), key(Qt::Key_PageUp); }, {0, 49, 4}},
    };
    for (const auto& [what, act, shown] : kSteps) {
        act();
        EXPECT_EQ(shown, Shown(viewer)) << what;
    }

    // A read-only field swallows no key, and the space key gives a button's command.
    viewer.Find<QLineEdit>("Value, first processed")->setFocus();
    key(Qt::Key_Right);
    EXPECT_EQ((Numbers{0, 49, 5}), Shown(viewer));
    viewer.Find<QAbstractButton>("Wider control window")->setFocus();
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
    const ControlText kTexts[] = {
        {"Next frame", "Go to the next frame [right arrow]\n(you can hold button to go through frames)"},
        {"Copy lower plot", "Copy lower plot to clipboard [Ctrl + G]"},
        {"Show frame", "Show current frame"},
        {"Original", "<p>/clips/0&lt;b&gt;&amp;c.yuv</p>"},
        {"Second processed", "<p>/clips/2&lt;b&gt;&amp;c.yuv</p>"},
        {"Bad frames", ""},
        {"Value, original", "Needs results of the file \"Original\""},
        {"Value, first processed", ""},
    };
    CheckTexts(*viewer.dialog, kTexts, "CFGV");
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
    CheckTexts(*viewer.dialog, kTexts, "CFGV");
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
        User user;
        user.In("Tolvane - Results visualization", [&](QWidget& dialog) {
            Press(dialog, Qt::Key_F1);
            EXPECT_EQ("viewer.html", opened.urls.takeLast().fileName().toStdString());
            Press(dialog, key);
            EXPECT_FALSE(QApplication::activeModalWidget());
        });
        ShowResults(nullptr, results.Parameters());
        EXPECT_FALSE(QApplication::activeModalWidget());
    }
}

}  // namespace
