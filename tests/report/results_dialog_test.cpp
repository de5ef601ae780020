#include "report/results_dialog.h"

#include "platform/qt/icon_button.h"
#include "platform/qt/plain_label.h"
#include "report/hold_button.h"
#include "report/report_graph.h"
#include "report/show_results.h"
#include "tests/report/made_results.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QCheckBox>
#include <QClipboard>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSlider>
#include <QTimer>
#include <QWheelEvent>

namespace {

void Wheel(QWidget& widget, int delta) {
    const QPointF middle = QRectF(widget.rect()).center();
    QWheelEvent event(middle, widget.mapToGlobal(middle), {}, QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);  // others don't go on to the parents
    qApp->notify(&widget, &event);
}

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
    const auto& plots = viewer.dialog->Controller().Views();
    EXPECT_EQ(range.VisibleFirst(), plots.at(1)->State().scale.rangeFirst);
    EXPECT_EQ(range.VisibleLast(), plots.at(1)->State().scale.rangeLast);
    EXPECT_EQ(range.Current(), plots.at(0)->State().cursor);
    EXPECT_EQ(range.Current(), plots.at(1)->State().cursor);
    return {range.VisibleFirst(), range.VisibleLast(), range.Current()};
}

TEST(ResultsDialog, OpensInTheMiddle) {
    const struct {
        int frames;
        Numbers shown;
        bool hasOverview;
        const char* count;
    } kCases[] = {
        {1, {0, 0, 0}, false, "1 frame"},       {2, {0, 0, 0}, false, "1 frame"},
        {3, {1, 2, 1}, false, "2 frames"},      {4, {1, 2, 1}, true, "2 frames"},
        {100, {25, 74, 49}, true, "50 frames"}, {5000, {1999, 2999, 2499}, true, "1001 frames"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.frames);
        const MadeResults results(c.frames);
        const Viewer viewer(results.Parameters());
        EXPECT_EQ(c.shown, Shown(viewer));
        EXPECT_EQ(c.hasOverview, viewer.dialog->Controller().Views().at(0)->IsOverview());
        EXPECT_FALSE(viewer.dialog->Controller().Views().at(1)->IsOverview());
        QStringList texts;
        for (const PlainLabel* label : viewer.dialog->findChildren<PlainLabel*>())
            texts.append(label->text());
        EXPECT_TRUE(texts.contains(QLatin1String(c.count))) << texts.join(u'|').toStdString();
        EXPECT_FALSE(viewer.dialog->grab().isNull());
    }
}

TEST(ResultsDialog, EveryControlMoves) {
    const MadeResults results(100, {10, 40, 60});
    const Viewer viewer(results.Parameters());
    QWidget* dialog = viewer.dialog.get();
    const auto click = [&viewer](const char* name) {
        auto* button = viewer.Find<QAbstractButton>(name);
        QTest::mouseClick(button, Qt::LeftButton);
    };
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
        {"wheel over a plot", [&] { Wheel(*viewer.dialog->Controller().Views().at(1), 120); }, {25, 74, 49}},
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
    for (int i = 0; i < 60; ++i) click("Wider control window");
    EXPECT_EQ((Numbers{0, 99, 5}), Shown(viewer));
    for (int i = 0; i < 60; ++i) click("Narrower control window");
    EXPECT_EQ((Numbers{4, 6, 5}), Shown(viewer));
}

TEST(ResultsDialog, ValuesAreTheStores) {
    MadeResults results(100);
    ResultRecord record;
    record.files = {results.files[2]};
    const Viewer viewer(results.Parameters());
    const auto text = [&](const char* name) { return viewer.Find<QLineEdit>(name)->text().toStdString(); };
    for (const int frame : {0, 1, 49, 98, 99}) {
        viewer.Find<QSlider>("Video slide")->setValue(frame);
        EXPECT_EQ(std::to_string(20 + frame * 7 % 17) + ".0000", text("Value, first processed"));
        EXPECT_EQ(std::to_string(40 + frame * 7 % 17) + ".0000", text("Value, second processed"));
        EXPECT_EQ("", text("Value, original"));
    }
    EXPECT_FALSE(viewer.Find<QLineEdit>("Value, original")->isEnabled());
    EXPECT_EQ("Frame 99 of 0 to 99. First processed 33.0000. Second processed 53.0000.",
              viewer.dialog->Controller().Views().at(0)->accessibleDescription().toStdString());
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

TEST(ResultsDialog, TextsAndEmptyStates) {
    const struct {
        const char* name;
        const char* toolTip;
    } kToolTips[] = {
        {"Previous frame",
         "Go to the previous frame [left arrow]\n(you can hold button to go through frames)"},
        {"Next frame", "Go to the next frame [right arrow]\n(you can hold button to go through frames)"},
        {"Wider control window", "Increase radius of control window\n(you can hold button to increase it)"},
        {"Narrower control window",
         "Decrease radius of control window\n(you can hold button to decrease it)"},
        {"Previous bad frame", "Go to previous bad frame [Ctrl + left arrow]"},
        {"Next bad frame", "Go to next bad frame [Ctrl + right arrow]"},
    };
    const MadeResults results(100, {50});
    const Viewer viewer(results.Parameters());
    EXPECT_EQ("Tolvane - Results visualization", viewer.dialog->windowTitle().toStdString());
    for (const auto& c : kToolTips)
        EXPECT_EQ(c.toolTip, viewer.Find<QAbstractButton>(c.name)->toolTip().toStdString());
    for (const PlainLabel* label : viewer.dialog->findChildren<PlainLabel*>()) {
        if (label->text() != QStringLiteral("First processed")) continue;
        EXPECT_TRUE(label->isEnabled());
        EXPECT_TRUE(label->toolTip().contains(QStringLiteral("1&lt;b&gt;&amp;c.yuv"))) << "never markup";
    }

    const MadeResults none(0);
    const Viewer empty(none.Parameters());
    EXPECT_EQ((Numbers{0, 0, 0}), Shown(empty));
    EXPECT_FALSE(empty.Find<QAbstractButton>("Next bad frame")->isEnabled());
    EXPECT_TRUE(empty.Find<QAbstractButton>("Next bad frame")->toolTip().contains(QStringLiteral("Needs")));
    QTest::keyClick(empty.dialog.get(), Qt::Key_Right, Qt::ControlModifier);
    QTest::mouseClick(empty.Find<QAbstractButton>("Wider control window"), Qt::LeftButton);
    EXPECT_EQ((Numbers{0, 0, 0}), Shown(empty));
    EXPECT_EQ("", empty.Find<QLineEdit>("Value, first processed")->text().toStdString());
    EXPECT_FALSE(empty.dialog->grab().isNull());
}

// Every control has a name, and no letter is given twice.
TEST(ResultsDialog, NamesAndMnemonics) {
    const MadeResults results(100);
    const Viewer viewer(results.Parameters());
    QString letters;
    const auto take = [&letters](const QString& text) {
        const auto match = QRegularExpression(QStringLiteral("&([^&])")).match(text);
        if (match.hasMatch()) letters += match.captured(1).toLower();
    };
    for (const auto* button : viewer.dialog->findChildren<QAbstractButton*>()) {
        EXPECT_FALSE(button->accessibleName().isEmpty() && button->text().isEmpty());
        take(button->text());
    }
    for (const auto* group : viewer.dialog->findChildren<QGroupBox*>()) take(group->title());
    EXPECT_EQ(0, letters.size() - QSet<QChar>(letters.begin(), letters.end()).size())
        << letters.toStdString();
    for (const char letter : {'v', 'g', 'c', 'f'})
        EXPECT_TRUE(letters.contains(QLatin1Char(letter))) << letter;
}

TEST(ResultsDialog, IsModalAndClosesByKey) {
    const MadeResults results(100);
    for (const QKeyCombination key : {QKeyCombination(Qt::Key_Escape), Qt::CTRL | Qt::Key_W}) {
        bool wasModal = false;
        bool hasClosed = false;
        QTimer::singleShot(0, [&] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_TRUE(dialog);
            wasModal = dialog->isModal();
            EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
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
