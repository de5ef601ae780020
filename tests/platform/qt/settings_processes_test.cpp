#include "platform/qt/qt_settings_store.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kProcesses = 3;
constexpr int kValues = 10;

QtSettingsStore Open() {
    return QtSettingsStore(QStringLiteral("Lumetry"), QStringLiteral("Shared"));
}

std::string ValueName(int process, int value) {
    return "value_" + std::to_string(process) + "_" + std::to_string(value);
}

TEST(SettingsStoreOfSeveral, ProcessesDontLoseEachOthersValues) {
    pid_t children[kProcesses];
    for (int process = 0; process < kProcesses; ++process) {
        children[process] = fork();
        ASSERT_NE(-1, children[process]);
        if (children[process] != 0) continue;
        QtSettingsStore store = Open();
        bool isSaved = true;
        for (int value = 0; value < kValues; ++value)
            isSaved &= store.WriteNumber(ValueName(process, value), value);
        _exit(isSaved ? 0 : 1);
    }
    for (pid_t child : children) {
        int status = -1;
        ASSERT_EQ(child, waitpid(child, &status, 0));
        EXPECT_EQ(0, status);
    }
    for (int process = 0; process < kProcesses; ++process) {
        for (int value = 0; value < kValues; ++value)
            EXPECT_EQ(value, Open().ReadNumber(ValueName(process, value)));
    }
}

}  // namespace
