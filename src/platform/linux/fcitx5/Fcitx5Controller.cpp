#include "platform/linux/fcitx5/Fcitx5Controller.h"

#include "platform/linux/dbus/DBusBuses.h"

#include <QDBusPendingCallWatcher>

namespace Fcitx5Controller {

QDBusMessage message(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    // A plain call would start an input method framework the user does not run.
    message.setAutoStartService(false);
    return message;
}

QDBusMessage call(const QString &method, const QVariantList &arguments)
{
    return DBusBuses::callSession(message(method, arguments), callTimeoutMs);
}

QString text(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    const QVariant first = reply.arguments().constFirst();
    return first.metaType() == QMetaType::fromType<QString>() ? first.toString() : QString();
}

QDBusArgument argument(const QDBusMessage &reply, qsizetype index, const char *signature)
{
    if (reply.type() != QDBusMessage::ReplyMessage)
        return {};
    const QVariant value = reply.arguments().value(index);
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return {};
    QDBusArgument argument = value.value<QDBusArgument>();
    return argument.currentSignature() == QLatin1String(signature) ? argument : QDBusArgument();
}

QStringList groupItems(const QDBusMessage &groupInfo)
{
    const QDBusArgument items = argument(groupInfo, 1, "a(ss)");
    if (items.currentSignature().isEmpty())
        return {};
    QStringList names;
    items.beginArray();
    while (!items.atEnd()) {
        QString name, layout;
        items.beginStructure();
        items >> name >> layout;
        items.endStructure();
        names << name;
    }
    items.endArray();
    return names;
}

bool callLater(const QString &method, const QVariantList &arguments, QObject *context,
               std::function<void(const QDBusMessage &reply)> answered)
{
    const std::optional<QDBusConnection> bus = DBusBuses::session();
    if (!bus)
        return false;
    auto *watcher = new QDBusPendingCallWatcher(bus->asyncCall(message(method, arguments), callTimeoutMs), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [answered = std::move(answered)](QDBusPendingCallWatcher *finished) {
                         finished->deleteLater();
                         answered(finished->reply());
                     });
    return true;
}

} // namespace Fcitx5Controller
