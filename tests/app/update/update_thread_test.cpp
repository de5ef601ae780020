#include "app/update/update_thread.h"

#include "app/update/restart.h"
#include "tests/platform/qt/user.h"
#include "tests/update/update_fixture.h"

namespace {

constexpr int kPatienceMs = 10000;
constexpr int kAtOnceMs = 500;

struct Updating : UpdateFixture {
    Updating() {
        calls.endWindowsAndThen = [this](std::function<void()> then) {
            EXPECT_EQ(qApp->thread(), QThread::currentThread());
            // A run takes a while to stop.
            if (endsRun) QTimer::singleShot(50, qApp, then);
            hasStopped = true;
        };
        calls.restart = [this] {
            EXPECT_EQ(qApp->thread(), QThread::currentThread());
            hasRestarted = true;
        };
    }

    UpdateCalls calls;
    bool endsRun = true;
    bool hasStopped = false;
    bool hasRestarted = false;
};

TEST_F(Updating, AsksOverTheActiveWindowAndRestarts) {
    Offer({{"tolvane", Script("new")}});
    QWidget window;
    Activate(window);
    CAutoUpdater updater(Settings());
    UpdateThread thread(updater, calls);
    thread.Start(server.Url());

    User user;
    user.In("Update is available",
            [&](QWidget& active) {
                const auto& box = dynamic_cast<QMessageBox&>(active);
                EXPECT_EQ(&window, box.parentWidget());
                EXPECT_EQ(QMessageBox::No, box.standardButton(box.defaultButton()));
                EXPECT_EQ(QMessageBox::No, box.standardButton(box.escapeButton()));
            })
        .Press("Update is available", "Yes")
        .Press("Download completed", "Yes");
    ASSERT_TRUE(QTest::qWaitFor([&] { return hasRestarted; }, kPatienceMs));
    EXPECT_TRUE(hasStopped);
    EXPECT_EQ(Script("new"), Contents("tolvane"));
}

TEST_F(Updating, ShowsWhatFailed) {
    server.AnswerText("/update/LATEST", "9.0.0.0");
    CAutoUpdater updater(Settings());
    UpdateThread thread(updater, calls);
    thread.Start(server.Url());
    bool isTold = false;
    User user;
    user.Press("Update is available", "Yes").In("Download error", [&](QWidget& box) {
        return isTold = box.close();
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return isTold; }, kPatienceMs));
    EXPECT_FALSE(hasStopped);
}

TEST_F(Updating, EndsAtOnceWhateverItWaitsFor) {
    const BlackHole hole;
    const HttpAnswer aByteAMinute = {.body = std::string(100, ' '), .pause = std::chrono::minutes(1)};
    server.Answer("/slow/update/LATEST", aByteAMinute);
    server.Answer("/silent/update/LATEST", {.hangsAfterBody = true, .raw = ""});
    Offer({{"tolvane", Script("new")}});
    const auto download = [&](const std::string& slow) {
        server.Answer("/update/files/Win32/" + slow, aByteAMinute);
        User user;
        user.Press("Update is available", "Yes");
        QTest::qWait(200);
        Offer({{"tolvane", Script("new")}});
    };
    const std::tuple<const char*, std::string, std::function<void()>> cases[] = {
        {"an address that swallows everything", hole.Url(), [] { QTest::qWait(100); }},
        {"a name that nobody knows", "https://update.tolvane.invalid/", [] { QTest::qWait(100); }},
        {"a server that says nothing", server.Url() + "silent/", [] { QTest::qWait(100); }},
        {"a version of a byte a minute", server.Url() + "slow/", [] { QTest::qWait(100); }},
        {"a list of a byte a minute", server.Url(), [&] { download("LIST"); }},
        {"a file of a byte a minute", server.Url(), [&] { download("tolvane"); }},
        {"a question that nobody has seen", server.Url(), [] { QThread::msleep(200); }},
        {"a run that doesn't stop", server.Url(),
         [this] {
             User user;
             user.Press("Update is available", "Yes").Press("Download completed", "Yes");
             endsRun = false;
             EXPECT_TRUE(QTest::qWaitFor([this] { return hasStopped; }, kPatienceMs));
         }},
        {"nothing", server.Url(), [] {}},
    };
    for (const auto& [what, url, meanwhile] : cases) {
        SCOPED_TRACE(what);
        UpdaterSettings settings = Settings();
        settings.http = {};
        CAutoUpdater updater(settings);
        QElapsedTimer time;
        {
            UpdateThread thread(updater, calls);
            thread.Start(url);
            meanwhile();
            time.start();
        }
        EXPECT_LT(time.elapsed(), kAtOnceMs);
        QCoreApplication::processEvents();
        EXPECT_EQ(nullptr, QApplication::activeModalWidget());
        EXPECT_FALSE(hasRestarted);
        EXPECT_EQ(Script("old"), Contents("tolvane"));
    }
}

TEST_F(Updating, TellsAtTheStartWhatCouldNotBeInstalled) {
    Stage({{"tolvane", "new"}});
    Write("update/.TRIED", "");
    Write("update/tolvane", "cut off");
    CAutoUpdater updater(Settings());
    {
        User user;
        user.Close("Update error");
        InstallDownloadedUpdate(updater);
    }
    InstallDownloadedUpdate(updater);              // says nothing at the next start, or it would wait here
    RestartProgram(FromUtf8(Program("missing")));  // one that can't be started leaves this one running
}

}  // namespace
