#pragma once

#include <gtest/gtest.h>

#include "app/shell/main_window.h"
#include "platform/text.h"
#include "tests/app/rules/shell_fixture.h"
#include "tests/app/shell/user.h"
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

    const TemporaryDirectory directory;
    ShellState state = QuietState(directory);
    int saves = 0;
    bool canSave = true;
    std::unique_ptr<MainWindow> window;
};
