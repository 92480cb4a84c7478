#include "platform/linux/fcitx5/Fcitx5Known.h"

#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/dbus/SignalReceiver.h"
#include "platform/linux/fcitx5/Fcitx5Addon.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QThread>

QString Fcitx5Known::current(const std::function<QString()> &read)
{
    if (!trusted())
        return read();
    if (!m_current)
        m_current = read();
    return *m_current;
}

QList<SourceProperties> Fcitx5Known::enabled(const std::function<QList<SourceProperties>()> &read)
{
    if (!trusted())
        return read();
    if (!m_enabled)
        m_enabled = read();
    return *m_enabled;
}

void Fcitx5Known::selected(const QString &id)
{
    if (trusted() && m_current != id)
        m_current.reset();
}

bool Fcitx5Known::addonPresent()
{
    if (QThread::currentThread()->loopLevel() == 0 || !m_listening)
        return Fcitx5Addon::present();
    trusted();
    return m_addon;
}

bool Fcitx5Known::trusted()
{
    // Without an event loop turning, the addon's signals wait unheard.
    if (QThread::currentThread()->loopLevel() == 0)
        return false;
    if (!m_listening)
        listen();
    if (!m_receiver)
        return false;
    // What the addon said so far, taken in before anything is read.
    QCoreApplication::sendPostedEvents(m_watcher, QEvent::MetaCall);
    QCoreApplication::sendPostedEvents(m_receiver, QEvent::MetaCall);
    return m_addon;
}

void Fcitx5Known::listen()
{
    m_listening = true;
    const std::optional<QDBusConnection> session = DBusBuses::session();
    if (!session)
        return;
    QDBusConnection bus = *session;
    auto *receiver = new SignalReceiver([this](const QDBusMessage &signal) { heard(signal); }, &m_listener);
    for (const char *signal : {"CurrentChanged", "GroupsChanged"}) {
        if (!bus.connect(Fcitx5Addon::service, Fcitx5Addon::path, Fcitx5Addon::interface, QLatin1String(signal),
                         receiver, SLOT(receive(QDBusMessage)))) {
            delete receiver;
            return;
        }
    }
    // The addon comes and goes with Fcitx5; whatever was known goes with it.
    auto *watcher =
        new QDBusServiceWatcher(Fcitx5Addon::service, bus, QDBusServiceWatcher::WatchForOwnerChange, receiver);
    QObject::connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, receiver,
                     [this](const QString &, const QString &, const QString &owner) {
                         m_addon = !owner.isEmpty();
                         m_current.reset();
                         m_enabled.reset();
                     });
    m_receiver = receiver;
    m_watcher = watcher;
    // Asked once the watcher is in place, so that no change falls between the two.
    m_addon = Fcitx5Addon::present();
}

void Fcitx5Known::heard(const QDBusMessage &signal)
{
    if (signal.member() == QLatin1String("CurrentChanged")) {
        m_current = signal.arguments().value(0).toString();
    } else {
        // A group's change may change the method too: the addon says so with its own signal.
        m_enabled.reset();
    }
}
