#include "platform/qt/color_scheme.h"

#include "tests/temporary_directory.h"

#include <gtest/gtest.h>
#include <QDBusConnection>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QProcess>
#include <QThread>

#include <atomic>

namespace {

constexpr char kBusConfiguration[] = R"(<busconfig>
  <type>session</type>
  <listen>unix:dir=/tmp</listen>
  <policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>)";

/// A settings portal that answers what it is told to.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    std::atomic<unsigned> scheme = 0;
    std::atomic<unsigned> delayMs = 0;

public slots:
    QDBusVariant Read(const QString& group, const QString& key) {
        QThread::msleep(delayMs);
        const bool isKnown =
            group == QStringLiteral("org.freedesktop.appearance") && key == QStringLiteral("color-scheme");
        return QDBusVariant(QVariant::fromValue(QDBusVariant(isKnown ? scheme.load() : 0U)));
    }
};

TEST(ColorScheme, AsksThePortal) {
    EXPECT_EQ(ColorScheme::Light, DesktopColorScheme()) << "without a bus";

    const TemporaryDirectory directory;
    QProcess daemon;
    daemon.start(
        QStringLiteral("dbus-daemon"),
        {QStringLiteral("--nofork"), QStringLiteral("--print-address"), QStringLiteral("--config-file"),
         QString::fromStdString(directory.Write("bus.conf", kBusConfiguration))});
    ASSERT_TRUE(daemon.waitForReadyRead(10000)) << "dbus-daemon doesn't start";
    const QByteArray address = daemon.readLine().trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    EXPECT_EQ(ColorScheme::Light, DesktopColorScheme()) << "without a portal";

    Portal portal;
    QThread thread;
    thread.start();
    portal.moveToThread(&thread);
    QDBusConnection bus =
        QDBusConnection::connectToBus(QString::fromLatin1(address), QStringLiteral("portal"));
    ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal,
                                   QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));

    const struct {
        const char* what;
        unsigned answer, delayMs;
        ColorScheme scheme;
    } cases[] = {{"no preference", 0, 0, ColorScheme::Light},
                 {"prefers dark", 1, 0, ColorScheme::Dark},
                 {"prefers light", 2, 0, ColorScheme::Light},
                 {"answers too late", 1, 1000, ColorScheme::Light}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        portal.scheme = c.answer;
        portal.delayMs = c.delayMs;
        QElapsedTimer timer;
        timer.start();
        EXPECT_EQ(c.scheme, DesktopColorScheme());
        EXPECT_LT(timer.elapsed(), 700);  // 100 and what a busy machine adds
    }
    thread.quit();
    thread.wait();
    daemon.kill();
    daemon.waitForFinished();
}

}  // namespace

#include "color_scheme_test.moc"
