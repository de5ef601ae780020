#include "tests/platform/qt/user.h"
#include "tests/temporary_directory.h"

#include <signal.h>

namespace {

/// The program as a user starts it, with a home of its own.
struct Program : testing::Test {
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

    const TemporaryDirectory home;
    QProcess process;
};

TEST_F(Program, EndsByASignalAsByExit) {
    std::filesystem::create_directories(home.Root() / "Lumetry");
    const std::tuple<int, const char*, const char*> kCases[] = {
        {SIGTERM, "", "run_num=1"},
        {SIGINT, "[numbers]\nrun_num=2\n", "run_num=3"},
        {SIGHUP, "[numbers]\nrun_num=29\n", "run_num=30"}};  // at the 30th start it asks ahead of its window
    for (const auto& [signal, before, after] : kCases) {
        SCOPED_TRACE(signal);
        home.Write("Lumetry/TLV.ini", before);
        Start({QStringLiteral("--nonsense"), QStringLiteral("-platform"), QStringLiteral("none")});
        ASSERT_TRUE(IsUp());
        QTest::qWait(200);
        kill(static_cast<pid_t>(process.processId()), signal);
        ASSERT_TRUE(process.waitForFinished(10000));
        EXPECT_EQ(QProcess::NormalExit, process.exitStatus());
        EXPECT_EQ(0, process.exitCode()) << process.readAll().toStdString();
        const std::string settings = ReadWhole(home.Root() / "Lumetry" / "TLV.ini");
        EXPECT_NE(std::string::npos, settings.find(after)) << settings;
    }
}

TEST_F(Program, SaysThatThereIsNoDisplay) {
    process.setProcessEnvironment(QProcessEnvironment());
    process.start(QString::fromUtf8(TOLVANE_PROGRAM), QStringList());
    ASSERT_TRUE(process.waitForFinished(10000));
    EXPECT_EQ(QProcess::NormalExit, process.exitStatus());
    EXPECT_EQ(1, process.exitCode());
    EXPECT_NE(-1, process.readAllStandardError().indexOf("there is no display"));
}

}  // namespace
