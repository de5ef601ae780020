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
    auto bus = QDBusConnection::connectToBus(QString::fromLatin1(address), QStringLiteral("portal"));
    ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/portal/desktop"), &portal,
                                   QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));

    for (const unsigned preference : {0u, 1u, 2u}) {  // none, dark, light
        portal.scheme = preference;
        EXPECT_EQ(preference == 1 ? ColorScheme::Dark : ColorScheme::Light, DesktopColorScheme());
    }
    portal.scheme = 1;
    portal.delayMs = 1000;
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(ColorScheme::Light, DesktopColorScheme()) << "it answers too late";
    EXPECT_LT(timer.elapsed(), 700);  // 100 and what a busy machine adds
    thread.quit();
    thread.wait();
    daemon.kill();
    daemon.waitForFinished();
}

}  // namespace

#include "color_scheme_test.moc"
