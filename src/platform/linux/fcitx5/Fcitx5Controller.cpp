#include "platform/linux/fcitx5/Fcitx5Controller.h"

#include "platform/linux/dbus/DBusBuses.h"

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

} // namespace Fcitx5Controller
