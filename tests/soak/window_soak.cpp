// The windows, used again and again in one process:  window_soak MINUTES [ROUNDS]
// Each round opens the main dialog, and with each kind of file looks at it, measures it and goes through the
// results.

#include "app/preview/preview_dialog.h"
#include "app/rules/metric_choice.h"
#include "app/shell/main_window.h"
#include "platform/loose_threads.h"
#include "platform/qt/theme.h"
#include "platform/text.h"
#include "report/report_frame.h"
#include "report/results_dialog.h"
#include "tests/faults/scenario.h"
#include "tests/platform/qt/user.h"
#include "tests/soak/soak.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QSlider>
#include <QTest>

#include <unistd.h>

#include <cstdio>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;

const std::string kProgress = "Tolvane - Progress", kViewer = "Tolvane - Results visualization",
                  kPreview = "Tolvane - Preview";

struct Files {
    std::wstring original, processed;
    Scenario::Inputs inputs = Scenario::Y4m;
};

std::vector<Files> MakeFiles(const fs::path& root) {
    std::vector<Files> files = {
        {FromUtf8(TOLVANE_SAMPLES "/yard.y4m"), FromUtf8(TOLVANE_SAMPLES "/yard_x264.y4m")}};
    for (const Scenario& scenario : kScenarios) {
        const fs::path directory = root / scenario.name;
        fs::create_directory(directory);
        WriteInputs(scenario, directory, scenario.Frames(), 0);
        // "--threads", "1", "--original", ...
        const std::vector<std::string> words = Arguments(scenario, directory, root);
        files.push_back({FromUtf8(words[3]), FromUtf8(words[5]), scenario.inputs});
    }
    return files;
}

/// Everything is saved, to `directory`.
ShellState StateFor(const Files& files, const std::wstring& directory) {
    ShellState state = NewShellState({true, true, true, true, true});
    MeasurementJob& job = state.job;
    for (const FileRow row : {RowOriginal, RowProcessed}) {
        FileRecord& slot = SlotOf(job, row);
        SetPath(slot, row == RowOriginal ? files.original : files.processed);
        slot.useAvs = files.inputs == Scenario::Scripts;
        if (files.inputs != Scenario::Raw) continue;
        slot.width = 32;
        slot.height = 24;
        slot.yuvType = IYUV;
    }
    job.csv.outputDir = job.visualization.outputDir = job.badFrames.outputDir = directory;
    job.csv.save = job.visualization.save = job.badFrames.save = true;
    return state;
}

QSlider* SliderOf(QWidget& window) {
    return &Find<QSlider>(window, "Video slide");
}

/// Steps in the viewer of results: along the slide, and through the window of frames.
void LookThroughResults(User& user) {
    const auto frameOf = [](QWidget& window) {
        return dynamic_cast<Report::ResultsDialog&>(window).FrameView();
    };
    user.In(kViewer,
            [](QWidget& window) {
                QSlider* const slide = SliderOf(window);
                slide->setValue(slide->maximum());
                slide->setValue(slide->minimum());
                Click(window, "Show frame");
                return true;
            })
        .In(kViewer,
            [=](QWidget& window) {
                if (frameOf(window) == nullptr || frameOf(window)->IsWaiting()) return false;
                SliderOf(window)->setValue(SliderOf(window)->maximum());
                return true;
            })
        .In(kViewer, [=](QWidget& window) {
            return !frameOf(window)->IsWaiting() && frameOf(window)->close() && window.close();
        });
}

void Preview(MainWindow& window) {
    User user;
    user.In(kPreview,
            [](QWidget& preview) {
                if (dynamic_cast<PreviewDialog&>(preview).IsWaiting()) return false;
                SliderOf(preview)->setValue(SliderOf(preview)->maximum());
                return true;
            })
        .In(kPreview, [](QWidget& preview) {
            return !dynamic_cast<PreviewDialog&>(preview).IsWaiting() && preview.close();
        });
    Click(window, "Preview, original file");
}

void Measure(MainWindow& window) {
    User user;
    user.Press(kProgress, "Continue");
    LookThroughResults(user);
    Click(window, "Process");
}

/// Opens the option dialogs that can be opened, and takes each back.
void LookAtOptions(MainWindow& window) {
    const struct {
        std::string button, title;
    } kDialogs[] = {{"Advanced, RGB/YUV matrix", "Tolvane - Advanced file settings"},
                    {"Advanced, CSV and visualization", "Tolvane - Advanced CSV and visualization settings"},
                    {"Advanced, \"bad frames\"", "Tolvane - \"Bad frames\" settings"},
                    {"More options", "Tolvane - More options"}};
    for (const auto& dialog : kDialogs) {
        if (!Find(window, dialog.button)->isEnabled()) continue;
        User user;
        user.In(dialog.title, [](QWidget& shown) { return shown.close(); });
        Click(window, dialog.button);
    }
}

void UseWindows(const Files& pair, const std::wstring& directory) {
    ShellState state = StateFor(pair, directory);
    MainWindow window(state, [] { return true; });
    window.show();
    Preview(window);
    Measure(window);
    LookAtOptions(window);
    Click(window, "Comparative analysis");  // which takes another file
    Click(window, "Comparative analysis");
    Measure(window);
    window.close();
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const TemporaryDirectory home;
    qputenv("XDG_CONFIG_HOME", home.Root().c_str());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    GTEST_FLAG_SET(throw_on_failure, true);  // what a step doesn't find
    // Logs of runs go to standard output; behind them are the figures.
    std::FILE* const figures = fdopen(dup(STDOUT_FILENO), "w");
    if (figures == nullptr || std::freopen("/dev/null", "w", stdout) == nullptr) return 1;
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
        if (type == QtFatalMsg) std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    QApplication application(argc, argv);
    InstallTheme(application);
    QApplication::setQuitOnLastWindowClosed(false);

    const std::vector<Files> files = MakeFiles(home.Root());
    fs::create_directory(home.Path("out"));
    fs::current_path(home.Root());
    const std::string what =
        "windows: " + std::to_string(files.size()) + " main dialogs a round, in one process";
    return Soak(argc, argv, what, figures, [&] {
        for (const Files& pair : files) UseWindows(pair, FromUtf8(home.Path("out")));
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
        if (!LooseThreadsEnd(std::chrono::seconds(20)))
            throw std::runtime_error("a thread that a window left behind doesn't end");
        return static_cast<int>(2 * files.size());
    });
}
