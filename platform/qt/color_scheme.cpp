#include "platform/qt/color_scheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QFile>

namespace {

constexpr int kPatienceMs = 100;
constexpr unsigned kPreferDark = 1;  // 0 no preference, 2 prefer light

// Without either of these the bus library would start a bus of its own.
bool HasSessionBus() {
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

}  // namespace

ColorScheme DesktopColorScheme() {
    if (!HasSessionBus()) return ColorScheme::Light;

    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    question << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme");
    const QDBusMessage answer = QDBusConnection::sessionBus().call(question, QDBus::Block, kPatienceMs);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
        return ColorScheme::Light;

    QVariant value = answer.arguments().constFirst();
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();  // comes wrapped twice
    return value.toUInt() == kPreferDark ? ColorScheme::Dark : ColorScheme::Light;
}
