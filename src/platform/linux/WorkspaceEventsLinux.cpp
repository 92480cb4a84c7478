#include "platform/WorkspaceEvents.h"

#include <QDBusConnection>
#include <QObject>

namespace {

// logind announces sleep with PrepareForSleep(true) and wake with PrepareForSleep(false).
class SleepReceiver : public QObject
{
    Q_OBJECT
public:
    SleepReceiver(std::function<void()> callback, QObject *parent)
        : QObject(parent)
        , m_callback(std::move(callback))
    {}

public slots:
    void prepareForSleep(bool sleeping)
    {
        if (!sleeping)
            m_callback();
    }

private:
    std::function<void()> m_callback;
};

bool observeSystemWake(QObject *context, std::function<void()> callback)
{
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return false;
    auto *receiver = new SleepReceiver(std::move(callback), context);
    if (!bus.connect(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
                     QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), receiver,
                     SLOT(prepareForSleep(bool)))) {
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

#include "WorkspaceEventsLinux.moc"
