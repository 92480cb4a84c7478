#include "platform/TrayHost.h"
#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/x11/X11Tray.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QGuiApplication>
#include <QTimer>

#include <xcb/xcb.h>

#include <cstdlib>

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
constexpr int dbusTimeoutMs = 2000;
// Only while no tray exists; an owner check is one round trip to the X server.
constexpr int x11PollMs = 1000;

// Whether the X11 tray selection of the default screen has an owner.
bool x11TrayOwned()
{
    auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    int screen = 0;
    char *host = nullptr;
    int display = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen))
        std::free(host);
    return X11Tray::ownedSelection(x11 ? x11->connection() : nullptr, screen).has_value();
}

// Lives under the caller's context until a host turns up, then reports once and goes.
class Watch : public QObject
{
public:
    Watch(QObject *context, std::function<void()> present)
        : QObject(context)
        , m_present(std::move(present))
    {
        if (const std::optional<QDBusConnection> session = DBusBuses::session()) {
            QDBusConnection bus = *session;
            auto *names = new QDBusServiceWatcher(watcherName, bus, QDBusServiceWatcher::WatchForRegistration, this);
            connect(names, &QDBusServiceWatcher::serviceRegistered, this, &Watch::found);
            QDBusMessage ask = QDBusMessage::createMethodCall(
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
            ask << watcherName;
            auto *reply = new QDBusPendingCallWatcher(bus.asyncCall(ask, dbusTimeoutMs), this);
            connect(reply, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *call) {
                const QDBusPendingReply<bool> owned = *call;
                call->deleteLater();
                if (owned.isValid() && owned.value())
                    found();
            });
        }
        if (QGuiApplication::platformName() == QLatin1String("xcb")) {
            auto *poll = new QTimer(this);
            connect(poll, &QTimer::timeout, this, [this] {
                if (x11TrayOwned())
                    found();
            });
            poll->start(x11PollMs);
            QTimer::singleShot(0, this, [this] {
                if (x11TrayOwned())
                    found();
            });
        }
    }

private:
    void found()
    {
        if (!m_present)
            return;
        const std::function<void()> present = std::move(m_present);
        m_present = nullptr;
        deleteLater();
        present();
    }

    std::function<void()> m_present;
};

} // namespace

TrayHost TrayHost::live()
{
    return {[](QObject *context, std::function<void()> present) {
        const QString platform = QGuiApplication::platformName();
        if (platform == QLatin1String("offscreen") || platform == QLatin1String("minimal"))
            return;
        new Watch(context, std::move(present));
    }};
}
