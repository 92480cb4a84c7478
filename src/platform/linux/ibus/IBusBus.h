#pragma once

#include "platform/input/InputSources.h"
#include "platform/linux/dbus/SignalReceiver.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QList>
#include <QPointer>
#include <QString>
#include <QVariantList>

#include <functional>
#include <memory>
#include <optional>

class QObject;

// The connection to the session's IBus daemon on IBus's own bus. The address is
// asked for whenever there is no live connection, so a daemon that starts late,
// restarts or goes away is followed without notice; a call waits at most
// callTimeoutMs for its answer.
//
// Connecting is bounded too: the daemon is knocked at first (see BusProbe), and
// the connection is made on a thread of its own. The process's first
// connection may take the whole knockLimitMs, before anything else waits on
// the process; later ones, made while an event loop may be turning, are waited
// for at most reconnectPatienceMs and otherwise picked up by a later call.
// A daemon that did not answer is not knocked at again for retryAfterMs.
//
// Made and used on one thread; only the connection attempt runs elsewhere.
class IBusBus
{
public:
    using Availability = InputSources::Availability;

    static constexpr int callTimeoutMs = 1000;
    static constexpr int knockLimitMs = 1000;
    static constexpr int reconnectPatienceMs = 100;
    static constexpr int retryAfterMs = 1000;
    // Selecting an engine that is not running yet waits for IBus to start its
    // process, which takes over a second on a busy machine.
    static constexpr int selectTimeoutMs = 2500;

    // `sent`, when given, is told of each message sent to IBus.
    explicit IBusBus(std::function<QString()> address, std::function<void()> sent = {});
    ~IBusBus();
    IBusBus(const IBusBus &) = delete;
    IBusBus &operator=(const IBusBus &) = delete;

    // The reply, or an error: QDBusError::Disconnected when IBus cannot be reached.
    QDBusMessage call(const QString &service, const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {}, int timeoutMs = callTimeoutMs);

    // Calls `callback` with each of IBus's change signals (GlobalEngineChanged,
    // RegistryChanged, the configuration's ValueChanged), and with an empty
    // message after every new connection, until `context`, which lives on this
    // thread, is destroyed. The object the signals are posted to, or none when
    // they cannot be.
    QObject *observe(QObject *context, std::function<void(const QDBusMessage &)> callback);

    // Changes whenever the connection does: what was read before may no longer hold.
    quint64 generation() const { return m_generation; }

    // Connects if need be, within the bounds above.
    Availability availability();

private:
    struct Attempt;

    struct Subscription
    {
        QPointer<SignalReceiver> receiver;
    };

    std::optional<QDBusConnection> connection();
    std::optional<QDBusConnection> adopt(const Attempt &attempt);
    void disconnect();
    bool attach(const QDBusConnection &connection, const Subscription &subscription) const;

    std::function<QString()> m_address;
    std::function<void()> m_sent;
    QString m_connectedAddress;
    QString m_connectionName;
    QList<Subscription> m_subscriptions;
    std::shared_ptr<Attempt> m_attempt;
    Availability m_availability = Availability::notRunning;
    QString m_failedAddress;
    QDeadlineTimer m_retryAt;
    bool m_attemptedBefore = false;
    quint64 m_generation = 0;
};
