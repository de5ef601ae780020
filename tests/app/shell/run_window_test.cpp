#include "app/shell/log_view.h"
#include "app/shell/progress_dialog.h"
#include "tests/app/shell/shell_window.h"

#include <cmath>
#include <cstdio>
#include <map>
#include <sstream>

namespace {

const std::string kProgress = "Tolvane - Progress";

std::string LogOf(QWidget& progress) {
    return progress.findChild<LogView*>()->Lines().join(u'\n').toStdString();
}

int PositionOf(QWidget& progress) {
    return progress.findChild<QProgressBar*>()->value();
}

/// The viewer's values are those of the squared errors that the samples come with.
void ExpectExactValues(QWidget& viewer) {
    std::istringstream exact(ReadWhole(ToUtf8(Sample("yard_x264.exact.csv"))));
    std::string line;
    std::getline(exact, line);
    int frame = 0;
    for (; std::getline(exact, line); ++frame) {
        double error = 0, samples = 0;
        ASSERT_EQ(2, std::sscanf(line.c_str(), "%*d,%lf,%*d,%*d,%lf", &error, &samples));
        Find<QSlider>(viewer, "Video slide").setValue(frame);
        const double shown = Find<QLineEdit>(viewer, "Value, first processed").text().toDouble();
        EXPECT_NEAR(10 * std::log10(255 * 255 * samples / error), shown, 6e-5) << "four digits of a float";
    }
    EXPECT_EQ(frame - 1, Find<QSlider>(viewer, "Video slide").maximum());
}

struct RunWindow : ShellWindow {
    /// Begins a run and returns when it is left.
    void Process() { Click(*window, "Process"); }

    /// The user waits for the end, looks at the window, and presses "Continue" if it's still there.
    User& LeaveAfter(User& user, const std::function<void(QWidget&)>& look) {
        return user.In(kProgress, [look](QWidget& progress) {
            if (!Find(progress, "Continue")->isEnabled()) return false;
            look(progress);
            if (progress.isVisible()) Click(progress, "Continue");
            return true;
        });
    }
};

TEST_F(RunWindow, FromChoosingFilesToTheFinishedRecord) {
    state.showResults = true;
    MainWindow& main = Open();
    User user;
    for (const char* file : {"yard.y4m", "yard_x264.y4m"}) {
        user.In("Open", [path = Sample(file)](QWidget& dialog) {
            auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
            name->setText(QString::fromStdWString(path));
            return QMetaObject::invokeMethod(&dialog, "accept");
        });
    }
    Click(main, "Browse, original file");
    Click(main, "Browse, processed file");
    EXPECT_EQ(ToUtf8(Sample("yard.y4m")), PathIn("original file"));
    EXPECT_EQ(FromUtf8(TOLVANE_SAMPLES), state.job.csv.outputDir);  // beside the video
    state.job.csv.outputDir = FromUtf8(directory.Root().native());
    Click(main, "Save CSV file");
    Click(main, "Save \"bad frames\"");

    std::string log;
    bool wasViewed = false;
    LeaveAfter(user, [&](QWidget& progress) {
        log = LogOf(progress);
        EXPECT_TRUE(Find<QPushButton>(progress, "Continue").isDefault());
        EXPECT_EQ(0, PositionOf(progress)) << "empty, not full";
    }).In("Tolvane - Results visualization", [&](QWidget& viewer) {
        wasViewed = true;
        EXPECT_FALSE(Find(main, "Exit")->isEnabled());
        EXPECT_EQ("&Process", Find<QPushButton>(main, "Process").text().toStdString());
        ExpectExactValues(viewer);
        EXPECT_TRUE(Find(viewer, "Next bad frame")->isEnabled());
        viewer.close();
    });
    Process();
    EXPECT_TRUE(wasViewed);
    EXPECT_EQ(1, saves);
    EXPECT_EQ(RunPhase::Editing, state.phase);
    EXPECT_TRUE(Find(main, "Exit")->isEnabled());

    std::size_t at = 0;
    for (const char* line :
         {"Creating measurement schedule...", " : Measuring YYUV-PSNR on yard.y4m yard_x264.y4m ", " : Done!",
          " : CSV saved to "}) {
        at = log.find(line, at);
        ASSERT_NE(std::string::npos, at) << line << " in " << log;
    }
}

TEST_F(RunWindow, LocksControlsShowsItsPaceAndEndsByAYesAlone) {
    ChooseLongVideo();
    state.showResults = true;  // but what was interrupted isn't shown
    MainWindow& main = Open();
    const auto areEnabled = [&] {
        std::map<QWidget*, bool> result;
        for (QWidget* widget : main.findChildren<QWidget*>())
            if (widget->window() == &main) result[widget] = widget->isEnabled();
        return result;
    };
    const auto before = areEnabled();
    Find(main, "Y-YUV")->setFocus();
    int atQuestion = 0;
    User user;
    user.In(kProgress,
            [&](QWidget& progress) {
                QStringList texts;
                for (const QLabel* label : progress.findChildren<QLabel*>()) texts.append(label->text());
                const QString all = texts.join(u'|');
                const QRegularExpression pace(
                    QStringLiteral("^Frame \\d+ of 1000000\\|[\\d.]+ frames/s\\|.* left$"));
                if (!all.endsWith(QStringLiteral(" left")) || !progress.findChild<LogView*>()->hasFocus())
                    return false;
                EXPECT_TRUE(pace.match(all).hasMatch()) << all.toStdString();
                EXPECT_EQ(RunPhase::Measuring, state.phase);
                ExpectAsTheFormTells();
                EXPECT_EQ("Sto&p", Find<QPushButton>(main, "Stop").text().toStdString());
                EXPECT_FALSE(progress.windowFlags() & Qt::WindowCloseButtonHint);
                for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Space})
                    QTest::keyClick(QApplication::focusWidget(), key);
                progress.close();
                main.close();
                EXPECT_TRUE(progress.isVisible() && main.isVisible());
                EXPECT_FALSE(main.HasEnded());
                Click(progress, "Stop");
                return true;
            })
        .In("Tolvane: Warning",
            [&](QWidget& box) {
                EXPECT_EQ("Are you sure?", dynamic_cast<QMessageBox&>(box).text().toStdString());
                auto& progress = *main.findChild<ProgressDialog*>();
                QTest::qWait(100);  // what was under way when it was asked has arrived
                atQuestion = PositionOf(progress);
                QTest::qWait(200);
                EXPECT_EQ(atQuestion, PositionOf(progress)) << "the run waits";
                QTest::keyClick(&box, Qt::Key_Escape);  // means No
            })
        .In(kProgress,
            [&](QWidget& progress) {
                if (PositionOf(progress) <= atQuestion) return false;
                EXPECT_FALSE(Find(progress, "Continue")->isEnabled());
                Click(progress, "Stop");
                return true;
            })
        .Press("Tolvane: Warning", "Yes");
    LeaveAfter(user, [](QWidget& progress) {
        EXPECT_FALSE(Find(progress, "Stop")->isEnabled());
        EXPECT_NE(std::string::npos, LogOf(progress).find("Measurement interrupted"));
        progress.close();
        QTest::keyClick(&progress, Qt::Key_Escape);
        EXPECT_TRUE(progress.isVisible());
        QTest::keyClick(progress.findChild<LogView*>(), Qt::Key_Return);  // "Continue" is the default now
        EXPECT_FALSE(progress.isVisible());
    });
    Process();
    EXPECT_EQ(RunPhase::Editing, state.phase);
    EXPECT_EQ(before, areEnabled());
    EXPECT_EQ(Find(main, "Y-YUV"), main.focusWidget());
    EXPECT_EQ("&Process", Find<QPushButton>(main, "Process").text().toStdString());
    canSave = false;  // the settings are lost, but it ends
    EXPECT_TRUE(main.close());
    EXPECT_TRUE(main.HasEnded());
}

TEST_F(RunWindow, AutocloseIsReadAtTheEndAndLeavesTheLogOfImagesForTwoSeconds) {
    for (const auto& [isTickedBefore, ofImages] : {std::pair(true, false), {false, false}, {true, true}}) {
        ChooseSamples();
        if (ofImages) {
            for (const auto& [row, name] : {std::pair(RowOriginal, "a.bmp"), {RowProcessed, "b.bmp"}}) {
                QImage image(4, 4, QImage::Format_RGB888);
                image.fill(row == RowOriginal ? Qt::red : Qt::blue);
                ASSERT_TRUE(image.save(QString::fromStdString(directory.Path(name))));
                SetPath(SlotOf(state.job, row), FromUtf8(directory.Path(name)));
            }
        }
        state.job.autoCloseProgress = isTickedBefore;
        Open();
        User user;
        if (!isTickedBefore) {
            user.In(kProgress, [](QWidget& progress) {
                EXPECT_FALSE(Find<QCheckBox>(progress, "autoclose").isChecked());
                Click(progress, "autoclose");
                // The run may have been faster than the tick, which then comes too late for it.
                if (Find(progress, "Continue")->isEnabled()) Click(progress, "Continue");
            });
        }
        QElapsedTimer time;
        time.start();
        Process();
        EXPECT_EQ(ofImages, time.elapsed() >= 2000);
        EXPECT_LT(time.elapsed(), 4000);
        EXPECT_TRUE(state.job.autoCloseProgress && window->isVisible());
        EXPECT_EQ(RunPhase::Editing, state.phase);
    }
}

TEST_F(RunWindow, ARunThatOpensNoFileSaysWhy) {
    SetPath(state.job.fileSlots[RowOriginal], L"/nowhere/a.mkv");
    SetPath(state.job.fileSlots[RowProcessed], L"/nowhere/b<b>&.y4m");
    state.showResults = true;  // there are none
    canSave = false;
    Open();
    std::string log;
    User user;
    LeaveAfter(user, [&](QWidget& progress) { log = LogOf(progress); });
    Process();
    for (const char* said :
         {"/nowhere/b<b>&.y4m", "needs \"Open with AVISynth\" in its row", "The settings can't be saved"})
        EXPECT_NE(std::string::npos, log.find(said)) << said << " in " << log;
    EXPECT_EQ(RunPhase::Editing, state.phase);
    EXPECT_TRUE(log.ends_with("No files were opened, can not perform measurement.")) << log;
}

TEST_F(RunWindow, EndsWithTheProgramFromAnyOfItsWindows) {
    ChooseLongVideo();
    for (const bool isAsked : {false, true}) {  // whether to stop
        SCOPED_TRACE(isAsked);
        MainWindow& main = Open();
        User user;
        if (isAsked) user.Press(kProgress, "Stop");
        user.In(isAsked ? "Tolvane: Warning" : kProgress, [&](QWidget&) { main.EndSoon(); });
        Process();
        EXPECT_TRUE(QTest::qWaitFor([&] { return main.HasEnded(); }, 5000));
        EXPECT_EQ(RunPhase::Editing, state.phase);
    }
}

}  // namespace
