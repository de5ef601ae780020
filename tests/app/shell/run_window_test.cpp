#include "app/rules/run_start.h"
#include "app/shell/log_view.h"
#include "app/shell/progress_dialog.h"
#include "tests/app/shell/shell_window.h"
#include "video/color_space.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

#include <filesystem>

namespace {

const std::string kProgress = "Tolvane - Progress";

/// A raw file of zeros, without taking space on the disk: more frames than are measured while a test looks
/// on.
FileRecord LongVideo(const TemporaryDirectory& directory) {
    FileRecord record = EmptySlot();
    const std::string path = directory.Write("long.yuv", "");
    std::filesystem::resize_file(path, std::uintmax_t{96} * 1000 * 1000);
    SetPath(record, FromUtf8(path));
    record.width = record.height = 8;  // a frame of 96 bytes
    record.yuvType = IYUV;
    return record;
}

std::string BmpOf(unsigned char gray) {
    std::string bmp = {'B', 'M', 102, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0,  40,
                       0,   0,   0,   4, 0, 0, 0, 4, 0, 0, 0,  1, 0, 24, 0};
    bmp.resize(54, '\0');
    return bmp + std::string(48, static_cast<char>(gray));
}

class RunWindow : public ShellWindow {
protected:
    void ChooseSamples() {
        SetPath(state.job.fileSlots[RowOriginal], Sample("yard.y4m"));
        SetPath(state.job.fileSlots[RowProcessed], Sample("yard_x264.y4m"));
    }
    void ChooseLongVideo() {
        state.job.fileSlots[RowOriginal] = state.job.fileSlots[RowProcessed] = LongVideo(directory);
    }
    /// Begins a run and returns when it is left.
    void Process() { Click(*window, "Process"); }
};

QStringList LogOf(QWidget& progress) {
    return progress.findChild<LogView*>()->Lines();
}

TEST_F(RunWindow, FromChoosingFilesToTheFinishedRecord) {
    state.showResults = true;
    MainWindow& main = Open();
    const auto choose = [](const std::wstring& path) {
        return [path](QWidget& dialog) {
            auto& files = dynamic_cast<QFileDialog&>(dialog);
            files.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
                ->setText(QString::fromStdWString(path));
            static_cast<QDialog&>(files).accept();
            return true;
        };
    };
    User user;
    user.In("Open", choose(Sample("yard.y4m"))).In("Open", choose(Sample("yard_x264.y4m")));
    Click(main, "Browse, original file");
    Click(main, "Browse, processed file");
    EXPECT_EQ(Sample("yard.y4m"),
              FromUtf8(Find<QLineEdit>(main, "Path, original file").text().toStdString()));
    EXPECT_EQ(FromUtf8(TOLVANE_SAMPLES), state.job.csv.outputDir);  // beside the video
    state.job.csv.outputDir = FromUtf8(directory.Root().native());
    Click(main, "Save CSV file");

    QStringList log;
    bool viewed = false;
    user.In(kProgress,
            [&](QWidget& progress) {
                if (!Find(progress, "Continue")->isEnabled()) return false;
                log = LogOf(progress);
                EXPECT_TRUE(Find<QPushButton>(progress, "Continue").isDefault());
                EXPECT_EQ(0, progress.findChild<QProgressBar*>()->value());  // empty, not full
                Click(progress, "Continue");
                return true;
            })
        .In("Tolvane - Results visualization", [&](QWidget& viewer) {
            viewed = true;
            EXPECT_FALSE(Find(main, "Exit")->isEnabled());
            EXPECT_EQ("Process", Find<QPushButton>(main, "Process").text().remove(u'&').toStdString());
            viewer.close();
            return true;
        });
    Process();
    EXPECT_TRUE(viewed);
    EXPECT_EQ(1, saves);
    EXPECT_EQ(RunPhase::Editing, state.phase);
    EXPECT_TRUE(Find(main, "Exit")->isEnabled());

    ASSERT_GE(log.size(), 4);
    const QString all = log.join(u'\n');
    const auto measuring = all.indexOf(QStringLiteral(" : Measuring YYUV-PSNR on yard.y4m yard_x264.y4m "));
    const auto done = all.indexOf(QStringLiteral(" : Done!"));
    EXPECT_GT(measuring, all.indexOf(QStringLiteral("Creating measurement schedule...")));
    EXPECT_GT(done, measuring);
    EXPECT_GT(all.indexOf(QStringLiteral(" : CSV saved to ")), done);
    // The values are those that the samples come with.
    std::string csv;
    for (const auto& file : std::filesystem::directory_iterator(directory.Root()))
        if (file.path().extension() == ".csv") csv = ReadWhole(file.path());
    EXPECT_NE(std::string::npos, csv.find("33.30")) << csv;
}

TEST_F(RunWindow, RefusesWhatCantBeMeasured) {
    for (const bool autoClose : {false, true}) {
        state = StateWith(L"/a.y4m", L"/b.y4m");
        state.job.maskSlot.useMask = true;
        state.job.autoCloseProgress = autoClose;
        Open();
        std::string text;
        User user;
        user.In("Tolvane: Error", [&](QWidget& window) {
            auto& box = dynamic_cast<QMessageBox&>(window);
            text = box.text().toStdString();
            EXPECT_EQ(QMessageBox::Warning, box.icon());
            return box.close();
        });
        Process();
        EXPECT_EQ("Choose mask file!", text);
        EXPECT_EQ(RunPhase::Editing, state.phase);
        EXPECT_EQ(autoClose, state.job.autoCloseProgress);
        EXPECT_EQ(0, saves);
    }
}

TEST_F(RunWindow, CancelledRawSettingsEndTheAttemptSilently) {
    const std::wstring raw = FromUtf8(directory.Write("a.yuv", std::string(1000, 'x')));
    SetPath(state.job.fileSlots[RowOriginal], raw);
    SetPath(state.job.fileSlots[RowProcessed], raw);
    Open();
    User user;
    user.Press("Tolvane - YUV File settings", "Cancel");
    Process();
    EXPECT_EQ(RunPhase::Editing, state.phase);
    EXPECT_EQ(0, saves);
}

TEST_F(RunWindow, AStopAnsweredWithNoLetsTheRunGoOn) {
    ChooseLongVideo();
    Open();
    int atQuestion = 0;
    User user;
    user.Press(kProgress, "Stop")
        .In("Tolvane: Warning",
            [&](QWidget& box) {
                EXPECT_EQ("Are you sure?", dynamic_cast<QMessageBox&>(box).text().toStdString());
                auto* bar = window->findChild<ProgressDialog*>()->findChild<QProgressBar*>();
                QTest::qWait(100);  // what was under way when it was asked has arrived
                atQuestion = bar->value();
                QTest::qWait(200);
                EXPECT_EQ(atQuestion, bar->value());    // the run waits
                QTest::keyClick(&box, Qt::Key_Escape);  // means No
                return true;
            })
        .In(kProgress,
            [&](QWidget& progress) {
                if (progress.findChild<QProgressBar*>()->value() <= atQuestion) return false;
                EXPECT_TRUE(Find(progress, "Stop")->isEnabled());
                EXPECT_FALSE(Find(progress, "Continue")->isEnabled());
                Click(progress, "Stop");
                return true;
            })
        .Press("Tolvane: Warning", "Yes")
        .In(kProgress, [&](QWidget& progress) {
            if (!Find(progress, "Continue")->isEnabled()) return false;
            EXPECT_FALSE(Find(progress, "Stop")->isEnabled());
            EXPECT_NE(-1, LogOf(progress).join(u'\n').indexOf(QStringLiteral("Measurement interrupted")));
            Click(progress, "Continue");
            return true;
        });
    state.showResults = true;  // but what was interrupted isn't shown
    Process();
    EXPECT_EQ(RunPhase::Editing, state.phase);
}

TEST_F(RunWindow, KeysAndTheCloseBoxDontEndIt) {
    ChooseLongVideo();
    MainWindow& main = Open();
    User user;
    user.In(kProgress,
            [&](QWidget& progress) {
                if (progress.findChild<QProgressBar*>()->value() == 0) return false;
                if (!progress.findChild<LogView*>()->hasFocus()) return false;
                EXPECT_FALSE(progress.windowFlags() & Qt::WindowCloseButtonHint);
                for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Space})
                    QTest::keyClick(QApplication::focusWidget(), key);
                progress.close();
                main.close();
                EXPECT_TRUE(progress.isVisible());
                EXPECT_TRUE(main.isVisible());
                EXPECT_FALSE(main.HasEnded());
                Click(progress, "Stop");
                return true;
            })
        .Press("Tolvane: Warning", "Yes")
        .In(kProgress, [&](QWidget& progress) {
            if (!Find(progress, "Continue")->isEnabled()) return false;
            progress.close();
            QTest::keyClick(&progress, Qt::Key_Escape);
            EXPECT_TRUE(progress.isVisible());
            QTest::keyClick(progress.findChild<LogView*>(), Qt::Key_Return);  // "Continue" is the default now
            EXPECT_FALSE(progress.isVisible());
            return true;
        });
    Process();
    EXPECT_TRUE(main.close());
    EXPECT_TRUE(main.HasEnded());
}

TEST_F(RunWindow, LocksControlsForItsLength) {
    ChooseLongVideo();
    MainWindow& main = Open();
    const auto areEnabled = [&] {
        std::map<QWidget*, bool> result;
        for (QWidget* widget : main.findChildren<QWidget*>())
            if (widget->window() == &main) result[widget] = widget->isEnabled();
        return result;
    };
    const auto before = areEnabled();
    Find(main, "Y-YUV")->setFocus();
    User user;
    user.In(kProgress,
            [&](QWidget& progress) {
                EXPECT_EQ(RunPhase::Measuring, state.phase);
                ExpectAsTheFormTells();
                EXPECT_EQ("Sto&p", Find<QPushButton>(main, "Stop").text().toStdString());
                Click(progress, "Stop");
                return true;
            })
        .Press("Tolvane: Warning", "Yes")
        .Press(kProgress, "Continue");
    Process();
    EXPECT_EQ(before, areEnabled());
    EXPECT_EQ(Find(main, "Y-YUV"), main.focusWidget());
    EXPECT_EQ("&Process", Find<QPushButton>(main, "Process").text().toStdString());
}

TEST_F(RunWindow, AutocloseClosesAtOnceAndIsReadAtTheEnd) {
    ChooseSamples();
    MainWindow& main = Open();
    for (const bool tickedBefore : {true, false}) {
        state.job.autoCloseProgress = tickedBefore;
        User user;
        if (!tickedBefore) {
            user.In(kProgress, [](QWidget& progress) {
                EXPECT_FALSE(Find<QCheckBox>(progress, "autoclose").isChecked());
                Click(progress, "autoclose");
                // The run may have been faster than the tick, which then comes too late for it.
                if (Find(progress, "Continue")->isEnabled()) Click(progress, "Continue");
                return true;
            });
        }
        QElapsedTimer time;
        time.start();
        Process();
        EXPECT_LT(time.elapsed(), 1900);
        EXPECT_TRUE(state.job.autoCloseProgress);
        EXPECT_EQ(RunPhase::Editing, state.phase);
    }
    EXPECT_TRUE(main.isVisible());
}

TEST_F(RunWindow, AutocloseLeavesTheLogOfImagesForTwoSeconds) {
    SetPath(state.job.fileSlots[RowOriginal], FromUtf8(directory.Write("a.bmp", BmpOf(10))));
    SetPath(state.job.fileSlots[RowProcessed], FromUtf8(directory.Write("b.bmp", BmpOf(20))));
    state.job.autoCloseProgress = true;
    Open();
    QElapsedTimer time;
    time.start();
    Process();
    EXPECT_GE(time.elapsed(), 2000);
    EXPECT_LT(time.elapsed(), 4000);
}

TEST_F(RunWindow, ARunThatOpensNoFileSaysWhy) {
    SetPath(state.job.fileSlots[RowOriginal], L"/nowhere/a.mkv");
    SetPath(state.job.fileSlots[RowProcessed], L"/nowhere/b<b>&.y4m");
    canSave = false;
    Open();
    User user;
    user.In(kProgress, [&](QWidget& progress) {
        if (!Find(progress, "Continue")->isEnabled()) return false;
        const QString log = LogOf(progress).join(u'\n');
        for (const char* said :
             {"/nowhere/b<b>&.y4m", "needs \"Open with AVISynth\" in its row", "The settings can't be saved"})
            EXPECT_TRUE(log.contains(QString::fromLatin1(said))) << said << " in " << log.toStdString();
        EXPECT_TRUE(log.endsWith(QStringLiteral("No files were opened, can not perform measurement.")));
        Click(progress, "Continue");
        return true;
    });
    Process();
}

TEST_F(RunWindow, ShowsRateAndTimeLeft) {
    ChooseLongVideo();
    Open();
    QStringList texts;
    User user;
    user.In(kProgress,
            [&](QWidget& progress) {
                texts.clear();
                for (const QLabel* label : progress.findChildren<QLabel*>()) texts.append(label->text());
                if (texts.filter(QStringLiteral(" left")).isEmpty()) return false;
                Click(progress, "Stop");
                return true;
            })
        .Press("Tolvane: Warning", "Yes")
        .Press(kProgress, "Continue");
    Process();
    ASSERT_EQ(3, texts.size());
    EXPECT_TRUE(texts[0].startsWith(QStringLiteral("Frame ")) &&
                texts[0].endsWith(QStringLiteral(" of 1000000")))
        << texts[0].toStdString();
    EXPECT_TRUE(texts[1].endsWith(QStringLiteral(" frames/s"))) << texts[1].toStdString();
}

TEST_F(RunWindow, EndsWithTheProgramFromAnyOfItsWindows) {
    ChooseLongVideo();
    state.job.autoCloseProgress = false;
    const struct {
        const char* what;
        std::string button;  // what is pressed in the window of the run first; empty: nothing
        std::string title;   // and where it is ended
    } cases[] = {{"while it measures", "", kProgress},
                 {"while it is asked whether to stop", "Stop", "Tolvane: Warning"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        MainWindow& main = Open();
        User user;
        if (!c.button.empty()) user.Press(kProgress, c.button);
        user.In(c.title, [&](QWidget&) {
            main.EndSoon();
            return true;
        });
        Process();
        EXPECT_TRUE(QTest::qWaitFor([&] { return main.HasEnded(); }, 5000));
        EXPECT_EQ(RunPhase::Editing, state.phase);
    }
}

/// Notes what it is told, and when.
struct Notes : IRunWindow {
    void Show(const std::vector<RunEvent>& come) override {
        for (const RunEvent& event : come) events.push_back(event.kind);
    }
    void RunFinished(std::unique_ptr<FinishRecord> finish) override {
        record = std::move(finish);
        activeAtEnd = run->IsActive();
    }
    void LeaveSoon() override {}
    QWidget* Widget() override { return nullptr; }
    RunThread* run = nullptr;
    std::vector<RunEvent::Kind> events;
    std::unique_ptr<FinishRecord> record;
    bool activeAtEnd = true;
};

TEST_F(RunWindow, EverythingArrivesBeforeTheEnd) {
    ChooseSamples();
    Answers answers;
    ASSERT_TRUE(PrepareRun(state, answers).ready);
    Notes notes;
    RunThread run(state.job, notes);
    notes.run = &run;
    run.Start();
    EXPECT_TRUE(run.IsActive());
    ASSERT_TRUE(QTest::qWaitFor([&] { return notes.record != nullptr; }, 10000));
    EXPECT_FALSE(notes.activeAtEnd);
    EXPECT_EQ(RunEvent::Kind::Range, notes.events.front());
    EXPECT_EQ(RunEvent::Kind::StopWithdrawn, notes.events.back());  // without a CSV file the last to be said
    EXPECT_EQ(2, notes.record->outcome->measurement);
}

TEST_F(RunWindow, AThreadThatIsGivenUpStopsItsRun) {
    ChooseLongVideo();
    Answers answers;
    ASSERT_TRUE(PrepareRun(state, answers).ready);
    Notes notes;
    {
        RunThread run(state.job, notes);
        notes.run = &run;
        run.Start();
        run.Pause();  // as while it is asked whether to stop it
    }                 // no event loop runs here
    ASSERT_NE(nullptr, notes.record);
    EXPECT_EQ(1, notes.record->outcome->measurement);
}

}  // namespace
