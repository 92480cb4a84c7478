#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QMutex>
#include <QPointer>
#include <QString>
#include <QVariantList>

#include <functional>
#include <optional>

class QObject;

// The connection to the session's IBus daemon on IBus's own bus. The address is
// asked for on every call, so a daemon that starts late, restarts or goes away
// is followed without notice; a call waits at most callTimeoutMs for its answer.
class IBusBus
{
public:
    static constexpr int callTimeoutMs = 1000;
    // Selecting an engine that is not running yet waits for IBus to start its
    // process, which takes over a second on a busy machine.
    static constexpr int selectTimeoutMs = 2500;

    enum class Change { Selected, Enabled };

    explicit IBusBus(std::function<QString()> address);
    ~IBusBus();
    IBusBus(const IBusBus &) = delete;
    IBusBus &operator=(const IBusBus &) = delete;

    // The reply, or an error: QDBusError::Disconnected when IBus cannot be reached.
    QDBusMessage call(const QString &service, const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {}, int timeoutMs = callTimeoutMs);

    // Calls `callback` on the thread of `context` after each change and after
    // every new connection, until `context` is destroyed.
    bool observe(Change change, QObject *context, std::function<void()> callback);

private:
    struct Subscription
    {
        Change change;
        QPointer<QObject> receiver;
    };

    std::optional<QDBusConnection> connection();
    void disconnect();
    bool attach(const QDBusConnection &connection, const Subscription &subscription) const;

    std::function<QString()> m_address;
    QMutex m_mutex;
    QString m_connectedAddress;
    QString m_connectionName;
    QList<Subscription> m_subscriptions;
};
