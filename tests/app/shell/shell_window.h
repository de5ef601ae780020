#pragma once

#include <gtest/gtest.h>

#include "app/rules/main_form.h"
#include "app/shell/main_window.h"
#include "platform/text.h"
#include "tests/app/rules/shell_fixture.h"
#include "tests/app/user.h"
#include "tests/temporary_directory.h"

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

inline const std::vector<std::string> kRowNames = {"original file", "processed file", "second processed file",
                                                   "mask file"};

/// What a screen reader calls the parts of a row, in the order of `RowPart`.
inline std::vector<std::string> RowControlNames(const std::string& row) {
    std::vector<std::string> names;
    for (const char* part : {"Path", "Browse", "Open with AVISynth", "Advanced", "Preview"})
        names.push_back(part + (", " + row));
    return names;
}

/// And every control of the main dialog, in the order of `Control`.
inline std::vector<std::string> ControlNames() {
    std::vector<std::string> names;
    for (const std::string& row : kRowNames)
        for (const std::string& name : RowControlNames(row)) names.push_back(name);
    for (const char* name : {"Comparative analysis",
                             "Use mask file:",
                             "Use black mask",
                             "Advanced, RGB/YUV matrix",
                             "Metric",
                             "Settings",
                             "Online metric info",
                             "Y-YUV",
                             "U-YUV",
                             "V-YUV",
                             "L-LUV",
                             "R-RGB",
                             "G-RGB",
                             "B-RGB",
                             "Save CSV file",
                             "Save metric visualization video / image",
                             "Advanced, CSV and visualization",
                             "Save \"bad frames\"",
                             "Advanced, \"bad frames\"",
                             "More options",
                             "Show results visualization",
                             "Process",
                             "Website",
                             "Feedback",
                             "Help",
                             "Exit"})
        names.emplace_back(name);
    return names;
}

/// The main dialog on the screen, with a state that a test prepares.
class ShellWindow : public testing::Test {
protected:
    /// Shows the window; the state is complete.
    MainWindow& Open() {
        window = std::make_unique<MainWindow>(state, [this] {
            ++saves;
            return canSave;
        });
        window->show();
        return *window;
    }

    /// Every control can be used, and says what turns it on, as the form of the state tells.
    void ExpectAsTheFormTells() {
        const MainForm form = MainFormFrom(state);
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

    const TemporaryDirectory directory;
    ShellState state = QuietState(directory);
    int saves = 0;
    bool canSave = true;
    std::unique_ptr<MainWindow> window;
};
