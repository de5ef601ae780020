#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <QProcess>
#include <QTest>

#include <filesystem>

namespace {

/// The program as a user starts it, with a home of its own.
class Program : public testing::Test {
protected:
    void Start(const QStringList& arguments = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), QString::fromStdString(home.Root().native()));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QString::fromUtf8(TOLVANE_PROGRAM), arguments);
        ASSERT_TRUE(process.waitForStarted());
    }
    /// Once its signals are handled, the event loop runs next.
    bool IsUp() {
        return QTest::qWaitFor(
            [&] {
                const std::string status =
                    ReadWhole("/proc/" + std::to_string(process.processId()) + "/status");
                const auto at = status.find("SigCgt:");
                return at != std::string::npos &&
                       (std::stoull(status.substr(at + 8, 17), nullptr, 16) & 1u << (SIGTERM - 1)) != 0;
            },
            10000);
    }
    std::string Settings() { return ReadWhole(home.Root() / "Lumetry" / "TLV.ini"); }
    void Write(const std::string& settings) {
        std::filesystem::create_directories(home.Root() / "Lumetry");
        home.Write("Lumetry/TLV.ini", settings);
    }

    const TemporaryDirectory home;
    QProcess process;
};

TEST_F(Program, EndsByASignalAsByExit) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(number);
        Start({QStringLiteral("--nonsense"), QStringLiteral("-platform"), QStringLiteral("none")});
        ASSERT_TRUE(IsUp());
        QTest::qWait(200);
        kill(static_cast<pid_t>(process.processId()), number);
        ASSERT_TRUE(process.waitForFinished(10000));
        EXPECT_EQ(QProcess::NormalExit, process.exitStatus());
        EXPECT_EQ(0, process.exitCode()) << process.readAll().toStdString();
    }
    EXPECT_NE(std::string::npos, Settings().find("run_num=3")) << Settings();
}

TEST_F(Program, AsksAtThe30thStartBeforeItsWindow) {
    Write("[numbers]\nrun_num=29\n");
    Start();
    ASSERT_TRUE(IsUp());
    QTest::qWait(200);  // the question is on the screen; the end takes it back
    kill(static_cast<pid_t>(process.processId()), SIGTERM);
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_EQ(0, process.exitCode()) << process.readAll().toStdString();
    EXPECT_NE(std::string::npos, Settings().find("run_num=30")) << Settings();
}

TEST_F(Program, SaysThatThereIsNoDisplay) {
    QProcessEnvironment environment;
    process.setProcessEnvironment(environment);
    process.start(QString::fromUtf8(TOLVANE_PROGRAM), QStringList());
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_EQ(QProcess::NormalExit, process.exitStatus());
    EXPECT_EQ(1, process.exitCode());
    EXPECT_NE(-1, process.readAllStandardError().indexOf("there is no display"));
}

}  // namespace
