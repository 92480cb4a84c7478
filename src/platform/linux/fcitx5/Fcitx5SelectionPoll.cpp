#include "platform/linux/fcitx5/Fcitx5SelectionPoll.h"

#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/fcitx5/Fcitx5Controller.h"

#include <QDBusPendingCallWatcher>

Fcitx5SelectionPoll::Fcitx5SelectionPoll(std::function<void()> callback, std::chrono::milliseconds interval,
                                         QObject *parent)
    : QObject(parent)
    , m_callback(std::move(callback))
    , m_timer(this)
{
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &Fcitx5SelectionPoll::look);
}

void Fcitx5SelectionPoll::setRunning(bool running)
{
    if (running && !m_timer.isActive())
        m_timer.start();
    else if (!running)
        m_timer.stop();
}

void Fcitx5SelectionPoll::look()
{
    const std::optional<QDBusConnection> bus = DBusBuses::session();
    if (m_waiting || !bus)
        return;
    m_waiting = true;
    const QDBusPendingCall pending = bus->asyncCall(Fcitx5Controller::message(QStringLiteral("CurrentInputMethod")),
                                                    Fcitx5Controller::callTimeoutMs);
    auto *watcher = new QDBusPendingCallWatcher(pending, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *finished) {
        finished->deleteLater();
        m_waiting = false;
        const QString current = Fcitx5Controller::text(finished->reply());
        if (current == m_last)
            return;
        m_last = current;
        m_callback();
    });
}
