#include "platform/linux/dbus/DBusBuses.h"

#include "platform/linux/dbus/BusProbe.h"

#include <QDBusError>

namespace DBusBuses {
namespace {

using namespace std::chrono_literals;

constexpr auto knockLimit = 1000ms;

std::optional<QDBusConnection> ifAnswering(const QString &address, QDBusConnection (*connect)())
{
    if (address.isEmpty() || BusProbe::knock(address, knockLimit) != BusProbe::Result::Answered)
        return std::nullopt;
    QDBusConnection bus = connect();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

} // namespace

std::optional<QDBusConnection> session()
{
    static const std::optional<QDBusConnection> bus =
        ifAnswering(BusProbe::sessionAddress(), &QDBusConnection::sessionBus);
    return bus;
}

QDBusMessage callSession(const QDBusMessage &message, int timeoutMs)
{
    const std::optional<QDBusConnection> bus = session();
    if (!bus)
        return message.createErrorReply(QDBusError::Disconnected, QStringLiteral("The session bus does not answer."));
    return bus->call(message, QDBus::Block, timeoutMs);
}

bool sessionHas(const QString &name, int timeoutMs)
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
    question.setArguments({name});
    const QDBusMessage reply = callSession(question, timeoutMs);
    return reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toBool();
}

StackReport::Reach reachOf(const QDBusMessage &reply)
{
    const QString error = reply.type() == QDBusMessage::ErrorMessage ? reply.errorName() : QString();
    if (error == QLatin1String("org.freedesktop.DBus.Error.NoReply")
        || error == QLatin1String("org.freedesktop.DBus.Error.Timeout"))
        return StackReport::Reach::silent;
    if (error == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown")
        || error == QLatin1String("org.freedesktop.DBus.Error.Disconnected"))
        return StackReport::Reach::absent;
    return StackReport::Reach::answered;
}

std::optional<QDBusConnection> system()
{
    QString address = qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS");
    if (address.isEmpty())
        address = QStringLiteral("unix:path=/var/run/dbus/system_bus_socket");
    static const std::optional<QDBusConnection> bus = ifAnswering(address, &QDBusConnection::systemBus);
    return bus;
}

} // namespace DBusBuses
