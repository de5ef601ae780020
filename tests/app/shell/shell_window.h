#pragma once

#include "app/rules/main_form.h"
#include "app/shell/main_window.h"
#include "platform/text.h"
#include "tests/app/rules/shell_fixture.h"
#include "tests/platform/qt/user.h"
#include "tests/temporary_directory.h"
#include "video/color_space.h"

inline std::wstring Sample(const std::string& name) {
    return FromUtf8(std::string(TOLVANE_SAMPLES "/") + name);
}

/// A state that writes nowhere but into the test's directory, and shows no results at a run's end.
inline ShellState QuietState(const TemporaryDirectory& directory) {
    ShellState state = StateWith();
    state.showResults = false;
    const std::wstring place = FromUtf8(directory.Root().native());
    state.job.csv.outputDir = state.job.visualization.outputDir = state.job.badFrames.outputDir = place;
    return state;
}

/// Every control of the main dialog as a screen reader calls it, in the order of `Control`.
inline std::vector<std::string> ControlNames() {
    std::vector<std::string> names;
    for (const char* row : {"original file", "processed file", "second processed file", "mask file"})
        for (const char* part : {"Path", "Browse", "Open with AVISynth", "Advanced", "Preview"})
            names.push_back(std::string(part) + ", " + row);
    const auto add = [&names](std::initializer_list<const char*> step) {
        names.insert(names.end(), step.begin(), step.end());
    };
    add({"Comparative analysis", "Use mask file:", "Use black mask", "Advanced, RGB/YUV matrix"});
    add({"Metric", "Settings", "Online metric info"});
    add({"Y-YUV", "U-YUV", "V-YUV", "L-LUV", "R-RGB", "G-RGB", "B-RGB"});
    add({"Save CSV file", "Save metric visualization video / image", "Advanced, CSV and visualization",
         "Save \"bad frames\"", "Advanced, \"bad frames\"", "More options", "Show results visualization",
         "Process", "Website", "Feedback", "Help", "Exit"});
    return names;
}

/// The main dialog on the screen, with a state that a test prepares.
struct ShellWindow : testing::Test {
    /// Shows the window; the state is complete.
    MainWindow& Open() {
        window = std::make_unique<MainWindow>(state, [this] {
            ++saves;
            return canSave;
        });
        window->show();
        return *window;
    }
    /// And gives it the keyboard.
    MainWindow& OpenActive() {
        Activate(Open());
        return *window;
    }

    /// Replaces what stands in a field, by the keyboard.
    void Type(const std::string& field, const std::string& text) {
        auto& edit = Find<QLineEdit>(*window, field);
        edit.setFocus();
        edit.selectAll();
        QTest::keyClick(&edit, Qt::Key_Delete);
        QTest::keyClicks(&edit, QString::fromStdString(text));
    }
    std::string PathIn(const std::string& row) {
        return Find<QLineEdit>(*window, "Path, " + row).text().toStdString();
    }

    /// Every control can be used, and says what turns it on, as the form of the state tells.
    void ExpectAsTheFormTells() {
        const MainForm form = MainFormFrom(state);
        Find<QLabel>(*window, ToUtf8(form.status));
        std::vector<std::string> names = ControlNames();
        ASSERT_EQ(kControlCount, static_cast<int>(names.size()));
        names[static_cast<std::size_t>(Control::Process)] = ToUtf8(form.processCaption);
        for (int i = 0; i < kControlCount; ++i) {
            const QWidget* control = Find(*window, names[static_cast<std::size_t>(i)]);
            const std::string why = ToUtf8(form.WhyDisabled(static_cast<Control>(i)));
            SCOPED_TRACE(names[static_cast<std::size_t>(i)]);
            EXPECT_EQ(why.empty(), control->isEnabled());
            EXPECT_EQ(why, control->accessibleDescription().toStdString());
            EXPECT_TRUE(why.empty() || !control->toolTip().isEmpty());
        }
    }

    void ChooseSamples() {
        SetPath(state.job.fileSlots[RowOriginal], Sample("yard.y4m"));
        SetPath(state.job.fileSlots[RowProcessed], Sample("yard_x264.y4m"));
    }
    /// Raw files of zeros, which take no space on the disk: a million frames, more than a test waits for.
    void ChooseLongVideo() {
        const std::string path = directory.Write("long.yuv", "");
        std::filesystem::resize_file(path, std::uintmax_t{96} * 1000 * 1000);
        FileRecord record = EmptySlot();
        SetPath(record, FromUtf8(path));
        record.width = record.height = 8;  // a frame of 96 bytes
        record.yuvType = IYUV;
        state.job.fileSlots[RowOriginal] = state.job.fileSlots[RowProcessed] = record;
    }

    const TemporaryDirectory directory;
    ShellState state = QuietState(directory);
    int saves = 0;
    bool canSave = true;
    std::unique_ptr<MainWindow> window;
};
