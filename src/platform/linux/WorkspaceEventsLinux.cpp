#include "platform/WorkspaceEvents.h"
#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/dbus/SignalReceiver.h"

#include <QDBusConnection>
#include <QObject>

namespace {

bool observeSystemWake(QObject *context, std::function<void()> callback)
{
    const std::optional<QDBusConnection> system = DBusBuses::system();
    if (!system)
        return false;
    QDBusConnection bus = *system;
    // logind announces sleep with PrepareForSleep(true) and waking with PrepareForSleep(false).
    auto *receiver = new SignalReceiver(std::move(callback), context);
    if (!bus.connect(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
                     QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), receiver,
                     SLOT(deliverWhenFalse(bool)))) {
        delete receiver;
        return false;
    }
    return true;
}

// X11 and Wayland offer no reliable, portable notice of another application
// becoming active; the two-second tick covers what such a notice would catch.
bool observeNoActivation(QObject *, std::function<void(qint64)>)
{
    return false;
}

} // namespace

WorkspaceEvents WorkspaceEvents::live()
{
    return {observeSystemWake, observeNoActivation};
}
