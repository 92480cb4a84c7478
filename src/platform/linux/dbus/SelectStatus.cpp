#include "platform/linux/dbus/SelectStatus.h"

#include "platform/input/InputSources.h"

#include <QDBusError>

namespace SelectStatus {

qint32 ofError(const QDBusMessage &reply)
{
    // What the bus answers for a name nobody owns when asked not to start it.
    if (reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner"))
        return InputSources::unavailable;
    switch (QDBusError(reply).type()) {
    case QDBusError::Disconnected:
    case QDBusError::ServiceUnknown: return InputSources::unavailable;
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut: return InputSources::noReply;
    default: return InputSources::refused;
    }
}

} // namespace SelectStatus
