#include "app/shell/start_up.h"

#include "app/dialogs/compressor_dialog.h"
#include "app/rules/compressor_file.h"
#include "app/rules/settings.h"
#include "app/rules/shell_start.h"
#include "app/shell/contact.h"
#include "app/shell/main_window.h"
#include "app/shell/quit_signals.h"
#include "app/update/restart.h"
#include "app/update/update_thread.h"
#include "platform/program_directory.h"
#include "platform/qt/message_box.h"
#include "platform/qt/qt_settings_store.h"
#include "platform/qt/theme.h"
#include "video/avisynth/temporary_script.h"

#include <QApplication>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <functional>
#include <utility>

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

/// The windows from the first to the last; whether the program is to start anew behind them.
bool RunWindows(CAutoUpdater& updater, const std::string& updateServer) {
    QtSettingsStore store(QStringLiteral("Lumetry"), QStringLiteral("TLV"));
    const std::wstring writable = WritableProgramDirectory();
    ShellState state = StartShell(store, ProgramDirectory(), writable);
    MainWindow window(state, [&] {
        const bool areSaved = SaveSettings(store, Metric::GetMetricList(), state);
        return SaveCompressorFile(writable, state.job.visualization.compressor) && areSaved;
    });

    bool isOver = false;
    bool startsAnew = false;
    const auto end = [&isOver] {
        isOver = true;
        QApplication::exit();
    };
    std::function<void()> whenClosed = end;
    QObject::connect(
        &window, &MainWindow::Ended, &window, [&] { whenClosed(); }, Qt::QueuedConnection);

    const QuitSignals quitSignals;
    QObject::connect(&quitSignals, &QuitSignals::Received, &window, [&] {
        whenClosed = end;
        window.EndSoon();
        if (window.HasEnded()) end();  // an update may have closed it before
    });

    UpdateThread update(updater, {.endWindowsAndThen =
                                      [&](std::function<void()> then) {
                                          whenClosed = std::move(then);
                                          window.EndSoon();
                                      },
                                  .restart =
                                      [&] {
                                          startsAnew = true;
                                          end();
                                      }});
    if (!IsProgramOfSystem()) update.Start(updateServer);

    if (IsFeedbackDue(state)) AskForFeedback();
    if (!window.HasEnded()) window.show();
    if (!isOver) QApplication::exec();
    return startsAnew;
}

}  // namespace

int RunShell(char* programName, const std::string& updateServer, UpdaterSettings updaterSettings) {
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
    // Qt takes the user's locale for all of C's functions, but numbers in files never have a decimal comma of
    // its.
    std::setlocale(LC_NUMERIC, "C");
    InstallTheme(application);
    // Not the last window that closes: that may be a question before the first one.
    QApplication::setQuitOnLastWindowClosed(false);

    CAutoUpdater updater(std::move(updaterSettings));
    InstallDownloadedUpdate(updater);
    InstallCompressorChooser();
    rkRemoveStaleScript();
    if (!RunWindows(updater, updateServer)) return 0;
    RestartProgram(updater.OwnPath());
    ShowMessage(nullptr, QMessageBox::Warning, L"Update error",
                L"Tolvane could not be started anew. Start it yourself.");
    return 1;
}
