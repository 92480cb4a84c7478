#include "platform/Notifications.h"
#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/dbus/SignalReceiver.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

// Each name travels as a session-bus signal: path /app/tolvar, interface
// "app.tolvar", member the name's last component.
namespace {

const QString objectPath = QStringLiteral("/app/tolvar");

QString interfaceOf(const QString &name)
{
    return name.section(QLatin1Char('.'), 0, -2);
}

QString memberOf(const QString &name)
{
    return name.section(QLatin1Char('.'), -1);
}

void postSignal(const QString &name)
{
    const std::optional<QDBusConnection> session = DBusBuses::session();
    if (!session)
        return;
    const QDBusConnection &bus = *session;
    bus.send(QDBusMessage::createSignal(objectPath, interfaceOf(name), memberOf(name)));
    // Signals leave from QtDBus's own thread; a round trip behind the signal makes
    // sure it is on the bus before a short-lived client exits.
    const QDBusMessage ping =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
    bus.call(ping, QDBus::Block, 1000);
}

bool observeSignal(const QString &name, QObject *context, std::function<void()> callback)
{
    const std::optional<QDBusConnection> session = DBusBuses::session();
    if (!session)
        return false;
    QDBusConnection bus = *session;
    auto *receiver = new SignalReceiver(std::move(callback), context);
    if (!bus.connect(QString(), objectPath, interfaceOf(name), memberOf(name), receiver, SLOT(deliver()))) {
        delete receiver;
        return false;
    }
    return true;
}

} // namespace

Notifications Notifications::live()
{
    return {postSignal, observeSignal};
}
