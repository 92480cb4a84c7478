#include "platform/linux/dbus/KnownSources.h"

#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/dbus/SignalReceiver.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QThread>

KnownSources::KnownSources(Signals watched)
    : m_signals(std::move(watched))
{}

InputSources KnownSources::remember(InputSources sources, const std::shared_ptr<KnownSources> &known)
{
    const auto enabled = [known, read = sources.enabled] { return known->enabled(read); };
    sources.enabled = enabled;
    sources.matching = [enabled](const QString &id) {
        QList<SourceProperties> found = enabled();
        found.removeIf([&](const SourceProperties &source) { return source.id.toString() != id; });
        return found;
    };
    sources.currentID = [known, read = sources.currentID] { return known->current(read); };
    sources.select = [known, select = sources.select](const QString &id) {
        const qint32 status = select(id);
        known->selected(id);
        return status;
    };
    sources.availability = [known, read = sources.availability] { return known->availability(read); };
    if (!known->m_signals.keymapChanged.isEmpty())
        sources.keymapHeld = [known, read = sources.keymapHeld] { return known->keymapHeld(read); };
    return sources;
}

template <typename T> T KnownSources::kept(std::optional<T> &known, const std::function<T()> &read)
{
    if (!trusted())
        return read();
    if (!known)
        known = read();
    return *known;
}

QString KnownSources::current(const std::function<QString()> &read)
{
    return kept(m_current, read);
}

QList<SourceProperties> KnownSources::enabled(const std::function<QList<SourceProperties>()> &read)
{
    return kept(m_enabled, read);
}

InputSources::Availability KnownSources::availability(const std::function<InputSources::Availability()> &read)
{
    return kept(m_availability, read);
}

bool KnownSources::keymapHeld(const std::function<bool()> &read)
{
    return kept(m_keymapHeld, read);
}

void KnownSources::selected(const QString &id)
{
    if (trusted() && m_current != id)
        m_current.reset();
}

bool KnownSources::present()
{
    if (QThread::currentThread()->loopLevel() == 0 || !m_receiver)
        return DBusBuses::sessionHas(m_signals.service);
    trusted();
    return m_present;
}

bool KnownSources::trusted()
{
    // Without an event loop turning, the signals wait unheard.
    if (QThread::currentThread()->loopLevel() == 0)
        return false;
    if (!m_listening)
        listen();
    if (!m_receiver)
        return false;
    // What was said so far, taken in before anything is read.
    QCoreApplication::sendPostedEvents(m_watcher, QEvent::MetaCall);
    QCoreApplication::sendPostedEvents(m_receiver, QEvent::MetaCall);
    return m_present;
}

void KnownSources::listen()
{
    m_listening = true;
    const std::optional<QDBusConnection> session = DBusBuses::session();
    if (!session)
        return;
    QDBusConnection bus = *session;
    auto *receiver = new SignalReceiver([this](const QDBusMessage &signal) { heard(signal); }, &m_listener);
    QStringList heard = QStringList{m_signals.currentChanged} + m_signals.listChanged;
    if (!m_signals.keymapChanged.isEmpty())
        heard << m_signals.keymapChanged;
    for (const QString &signal : std::as_const(heard)) {
        if (!bus.connect(m_signals.service, m_signals.path, m_signals.interface, signal, receiver,
                         SLOT(receive(QDBusMessage)))) {
            delete receiver;
            return;
        }
    }
    // The service comes and goes with its stack; whatever was known goes with it.
    auto *watcher = new QDBusServiceWatcher(m_signals.service, bus, QDBusServiceWatcher::WatchForOwnerChange, receiver);
    QObject::connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, receiver,
                     [this](const QString &, const QString &, const QString &owner) {
                         m_present = !owner.isEmpty();
                         forget();
                     });
    m_receiver = receiver;
    m_watcher = watcher;
    // Asked once the watcher is in place, so that no change falls between the two.
    m_present = DBusBuses::sessionHas(m_signals.service);
}

void KnownSources::heard(const QDBusMessage &signal)
{
    if (signal.member() == m_signals.currentChanged) {
        m_current = m_signals.currentOf(signal, m_enabled ? &*m_enabled : nullptr);
        return;
    }
    if (signal.member() == m_signals.keymapChanged) {
        const QVariantList held = signal.arguments();
        m_keymapHeld = held.value(0).toBool() || held.value(1).toBool();
        return;
    }
    // A new list may bring a new current source and a new reachability too.
    forget();
}

void KnownSources::forget()
{
    m_current.reset();
    m_enabled.reset();
    m_availability.reset();
    m_keymapHeld.reset();
}
