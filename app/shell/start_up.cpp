#include "app/shell/start_up.h"

#include "app/dialogs/compressor_dialog.h"
#include "app/rules/compressor_file.h"
#include "app/rules/settings.h"
#include "app/rules/shell_start.h"
#include "app/shell/contact.h"
#include "app/shell/main_window.h"
#include "app/shell/quit_signals.h"
#include "platform/program_directory.h"
#include "platform/qt/message_box.h"
#include "platform/qt/qt_settings_store.h"
#include "platform/qt/theme.h"
#include "video/avisynth/temporary_script.h"

#include <QApplication>

#include <clocale>
#include <csignal>
#include <cstdio>

namespace {

/// Qt ends the process with a core file where there is none.
bool HasDisplay() {
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

void AskForFeedback() {
    if (AskToProceed(nullptr, QMessageBox::Question, L"Tolvane 3.0", kFeedbackQuestion, L"Send feedback"))
        SendFeedback(nullptr);
}

int RunWindows(QApplication& application) {
    QtSettingsStore store(QStringLiteral("Lumetry"), QStringLiteral("TLV"));
    const std::wstring writable = WritableProgramDirectory();
    ShellState state = StartShell(store, ProgramDirectory(), writable);
    MainWindow window(state, [&] {
        SaveSettings(store, Metric::GetMetricList(), state);
        SaveCompressorFile(writable, state.job.visualization.compressor);
    });
    const QuitSignals quitSignals;
    QObject::connect(&quitSignals, &QuitSignals::Received, &window, &MainWindow::EndSoon);
    // Not the last window that closes: that may be the question below.
    QApplication::setQuitOnLastWindowClosed(false);
    QObject::connect(&window, &MainWindow::Ended, &application, &QApplication::quit, Qt::QueuedConnection);

    if (IsFeedbackDue(state)) AskForFeedback();
    if (window.HasEnded()) return 0;
    window.show();
    return QApplication::exec();
}

}  // namespace

int RunShell(char* programName) {
    if (!HasDisplay()) {
        std::fputs("tolvane: there is no display; tolvane-measure works without one\n", stderr);
        return 1;
    }
    // A closed pipe and a file at its size limit show as failed writes.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);

    QApplication::setApplicationName(QStringLiteral("tolvane"));
    QApplication::setDesktopFileName(QStringLiteral("tolvane"));
    int argc = 1;
    char* argv[] = {programName, nullptr};
    QApplication application(argc, argv);
    // Qt takes the user's locale for all of C's functions, but numbers in files never have a decimal comma of its.
    std::setlocale(LC_NUMERIC, "C");
    InstallTheme(application);
    InstallCompressorChooser();
    rkRemoveStaleScript();
    return RunWindows(application);
}
