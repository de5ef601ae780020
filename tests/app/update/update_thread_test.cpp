#include "app/update/update_thread.h"

#include "app/update/restart.h"
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

QMessageBox* Box() {
    return qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
}

/// Presses a button of each box that comes, and notes what they were.
class User : public QObject {
public:
    explicit User(QMessageBox::StandardButton button) {
        QObject::connect(&timer, &QTimer::timeout, this, [this, button] {
            QMessageBox* box = Box();
            if (!box || !box->button(button)) return;
            titles << box->windowTitle();
            parents << box->parentWidget();
            defaults << box->standardButton(box->defaultButton());
            escapes << box->standardButton(box->escapeButton());
            QTest::mouseClick(box->button(button), Qt::LeftButton);
        });
        timer.start(5);
    }

    QStringList titles;
    QList<QWidget*> parents;
    QList<QMessageBox::StandardButton> defaults;
    QList<QMessageBox::StandardButton> escapes;

private:
    QTimer timer;
};

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

    const User user(QMessageBox::Yes);
    ASSERT_TRUE(QTest::qWaitFor([&] { return hasRestarted; }, kPatienceMs));
    EXPECT_EQ(QStringList({"Update is available", "Download completed"}), user.titles);
    EXPECT_EQ(&window, user.parents.front());
    EXPECT_EQ(QList({QMessageBox::No, QMessageBox::No}), user.defaults);
    EXPECT_EQ(QList({QMessageBox::No, QMessageBox::No}), user.escapes);
    EXPECT_TRUE(hasStopped);
    EXPECT_EQ(Script("new"), Contents("tolvane"));
}

TEST_F(Updating, ShowsWhatFailed) {
    server.AnswerText("/update/LATEST", "9.0.0.0");
    CAutoUpdater updater(Settings());
    UpdateThread thread(updater, calls);
    thread.Start(server.Url());
    {
        const User user(QMessageBox::Yes);
        ASSERT_TRUE(QTest::qWaitFor([&] { return user.titles.size() == 1; }, kPatienceMs));
    }
    const User user(QMessageBox::Ok);
    ASSERT_TRUE(QTest::qWaitFor([&] { return user.titles.size() == 1; }, kPatienceMs));
    EXPECT_EQ("Download error", user.titles.front());
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
             const User user(QMessageBox::Yes);
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
        EXPECT_EQ(nullptr, Box());
        EXPECT_FALSE(hasRestarted);
        EXPECT_EQ(Script("old"), Contents("tolvane"));
    }
}

TEST_F(Updating, TellsAtTheStartWhatCouldNotBeInstalled) {
    Stage({{"tolvane", "new"}});
    Write("update/.TRIED", "");
    Write("update/tolvane", "cut off");
    const User user(QMessageBox::Ok);
    CAutoUpdater updater(Settings());
    InstallDownloadedUpdate(updater);
    EXPECT_EQ(QStringList("Update error"), user.titles);
    InstallDownloadedUpdate(updater);
    EXPECT_EQ(1, user.titles.size());
}

TEST_F(Updating, AProgramThatCantBeStartedLeavesThisOneRunning) {
    RestartProgram(FromUtf8(Program("missing")));
}

}  // namespace
