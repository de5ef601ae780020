#include "app/update/update_thread.h"

#include "app/update/restart.h"
#include "tests/app/user.h"
#include "tests/update/update_fixture.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <QTimer>

namespace {

constexpr int kPatienceMs = 10000;
constexpr int kAtOnceMs = 500;

class Updating : public UpdateFixture {
protected:
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
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    CAutoUpdater updater(Settings());
    UpdateThread thread(updater, calls);
    thread.Start(server.Url());

    User user;
    std::vector<QWidget*> parents;
    for (const char* title : {"Update is available", "Download completed"}) {
        user.In(title, [&](QWidget& active) {
            auto& box = dynamic_cast<QMessageBox&>(active);
            parents.push_back(box.parentWidget());
            EXPECT_EQ(QMessageBox::No, box.standardButton(box.defaultButton()));
            EXPECT_EQ(QMessageBox::No, box.standardButton(box.escapeButton()));
            Click(box, "Yes");
            return true;
        });
    }
    ASSERT_TRUE(QTest::qWaitFor([&] { return hasRestarted; }, kPatienceMs));
    EXPECT_EQ(&window, parents.front());
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
        isTold = true;
        return box.close();
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return isTold; }, kPatienceMs));
    EXPECT_FALSE(hasStopped);
}

TEST_F(Updating, EndsAtOnceWhateverItWaitsFor) {
    const BlackHole hole;
    Offer({{"tolvane", Script("new")}});
    const struct {
        const char* what;
        std::string url;
        std::function<void()> meanwhile;
    } cases[] = {
        {"the network", hole.Url(), [] { QTest::qWait(100); }},
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
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        UpdaterSettings settings = Settings();
        settings.http = {};
        CAutoUpdater updater(settings);
        QElapsedTimer time;
        {
            UpdateThread thread(updater, calls);
            thread.Start(c.url);
            c.meanwhile();
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
    int told = 0;
    for (int start = 0; start < 2; ++start) {
        QTimer::singleShot(0, [&] {
            QWidget* box = QApplication::activeModalWidget();
            if (!box) return;
            EXPECT_EQ("Update error", box->windowTitle().toStdString());
            ++told;
            box->close();
        });
        InstallDownloadedUpdate(updater);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(1, told) << "and not at the next start";
}

TEST_F(Updating, AProgramThatCantBeStartedLeavesThisOneRunning) {
    RestartProgram(FromUtf8(Program("missing")));
}

}  // namespace
