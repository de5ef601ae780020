#include "platform/loose_threads.h"
#include "platform/qt/theme.h"
#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <QApplication>

#include <cstdio>

/// Runs tests of windows without a display, unless QT_QPA_PLATFORM asks for one, and away from the user's
/// settings and desktop.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const TemporaryDirectory home;
    qputenv("XDG_CONFIG_HOME", home.Root().c_str());
    qputenv("XDG_RUNTIME_DIR", home.Root().c_str());
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");

    QApplication application(argc, argv);
    InstallTheme(application);
    const int result = RUN_ALL_TESTS();
    if (LooseThreadsEnd(std::chrono::seconds(20))) return result;
    std::fputs("a thread that a window left behind doesn't end\n", stderr);
    std::_Exit(1);
}
