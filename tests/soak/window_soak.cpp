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
#include "tests/app/user.h"
#include "tests/faults/scenario.h"
#include "tests/soak/soak.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QSlider>
#include <QTest>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

namespace fs = std::filesystem;

const std::string kProgress = "Tolvane - Progress", kViewer = "Tolvane - Results visualization",
                  kPreview = "Tolvane - Preview";

struct Files {
    std::wstring original, processed;
    bool isRaw = false;
    bool useAvs = false;
};

std::vector<Files> MakeFiles(const fs::path& root) {
    std::vector<Files> files = {
        {FromUtf8(TOLVANE_SAMPLES "/yard.y4m"), FromUtf8(TOLVANE_SAMPLES "/yard_x264.y4m"), false, false}};
    for (const Scenario& scenario : kScenarios) {
        const fs::path directory = root / scenario.name;
        fs::create_directory(directory);
        WriteInputs(scenario, directory, scenario.Frames(), 0);
        Files made = {L"", L"", scenario.inputs == Scenario::Raw, scenario.inputs == Scenario::Scripts};
        for (const auto& entry : fs::directory_iterator(directory)) {
            const std::string name = entry.path().stem();
            if (name == "original") made.original = FromUtf8(entry.path().native());
            if (name == "processed") made.processed = FromUtf8(entry.path().native());
        }
        files.push_back(made);
    }
    return files;
}

/// Everything is saved, to `directory`.
ShellState StateFor(const Files& files, const std::wstring& directory) {
    ShellState state = NewShellState({true, true, true, true, true});
    for (const FileRow row : {RowOriginal, RowProcessed}) {
        FileRecord& slot = SlotOf(state.job, row);
        SetPath(slot, row == RowOriginal ? files.original : files.processed);
        slot.useAvs = files.useAvs;
        if (files.isRaw) {
            slot.width = 32;
            slot.height = 24;
            slot.yuvType = IYUV;
        }
    }
    for (OutputSettings* output : {static_cast<OutputSettings*>(&state.job.csv),
                                   static_cast<OutputSettings*>(&state.job.visualization),
                                   static_cast<OutputSettings*>(&state.job.badFrames)})
        output->outputDir = directory;
    state.job.csv.save = state.job.visualization.save = state.job.badFrames.save = true;
    return state;
}

QSlider* SliderOf(QWidget& window) {
    return &Find<QSlider>(window, "Video slide");
}

/// Steps in the viewer of results: along the slide, and through the window of frames.
void LookThroughResults(User& user) {
    user.In(kViewer,
            [](QWidget& window) {
                QSlider* const slide = SliderOf(window);
                slide->setValue(slide->maximum());
                slide->setValue(slide->minimum());
                Click(window, "Show frame");
                return true;
            })
        .In(kViewer,
            [](QWidget& window) {
                auto* const frame = dynamic_cast<Report::ResultsDialog&>(window).FrameView();
                if (frame == nullptr || frame->IsWaiting()) return false;
                QSlider* const slide = SliderOf(window);
                slide->setValue(slide->maximum());
                return true;
            })
        .In(kViewer, [](QWidget& window) {
            auto* const frame = dynamic_cast<Report::ResultsDialog&>(window).FrameView();
            if (frame->IsWaiting()) return false;
            frame->close();
            window.close();
            return true;
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

int UseWindows(const std::vector<Files>& files, const std::wstring& directory) {
    for (const Files& pair : files) {
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
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
    return static_cast<int>(2 * files.size());
}

}  // namespace

int main(int argc, char** argv) {
    const double minutes = argc > 1 ? std::atof(argv[1]) : 0;
    const int rounds = argc > 2 ? std::atoi(argv[2]) : 0;
    if (minutes <= 0 && rounds <= 0) {
        std::fputs("usage: window_soak MINUTES [ROUNDS]\n", stderr);
        return 64;
    }
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
    Soak soak("windows: " + std::to_string(files.size()) + " main dialogs a round, in one process", minutes);
    for (int round = 0; rounds > 0 ? round < rounds : soak.GoesOn(); ++round) {
        const int runs = UseWindows(files, FromUtf8(home.Path("out")));
        if (!LooseThreadsEnd(std::chrono::seconds(20))) {
            std::fputs("a thread that a window left behind doesn't end\n", stderr);
            return 1;
        }
        soak.EndRound(runs);
    }
    return soak.Conclude(figures) || rounds > 0 ? 0 : 1;
}
