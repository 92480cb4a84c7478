#include "platform/linux/IBusBus.h"

#include "platform/linux/IBusNames.h"
#include "platform/linux/SignalReceiver.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QMetaObject>
#include <QMutexLocker>
#include <QObject>

#include <atomic>

namespace {

// Lives as a child of the observer's context, so that IBus's signals arrive on
// the context's thread and stop with it.
class ChangeReceiver : public SignalReceiver
{
    Q_OBJECT
public:
    using SignalReceiver::SignalReceiver;

public slots:
    // The panel's list of engines is the enabled set; other settings do not matter here.
    void valueChanged(const QDBusMessage &message)
    {
        const QVariantList arguments = message.arguments();
        const QString section = arguments.value(0).toString();
        const QString name = arguments.value(1).toString();
        if (section == QLatin1String("general")
            && (name == QLatin1String("preload_engines") || name == QLatin1String("preload-engines")))
            deliver();
    }
};

QString nextConnectionName()
{
    static std::atomic<int> counter = 0;
    return QStringLiteral("tolvar-ibus-%1").arg(++counter);
}

} // namespace

IBusBus::IBusBus(std::function<QString()> address)
    : m_address(std::move(address))
{}

IBusBus::~IBusBus()
{
    disconnect();
}

QDBusMessage IBusBus::call(const QString &service, const QString &path, const QString &interface, const QString &method,
                           const QVariantList &arguments, int timeoutMs)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    const std::optional<QDBusConnection> bus = connection();
    if (!bus)
        return message.createErrorReply(QDBusError::Disconnected, QStringLiteral("IBus is not running"));
    return bus->call(message, QDBus::Block, timeoutMs);
}

bool IBusBus::observe(Change change, QObject *context, std::function<void()> callback)
{
    if (!context)
        return false;
    auto *receiver = new ChangeReceiver(std::move(callback), nullptr);
    receiver->moveToThread(context->thread());
    receiver->setParent(context);
    const Subscription subscription{change, receiver};
    const std::optional<QDBusConnection> bus = connection();
    const QMutexLocker locker(&m_mutex);
    m_subscriptions.removeIf([](const Subscription &s) { return s.receiver.isNull(); });
    m_subscriptions << subscription;
    // Without IBus now, the subscription waits for the connection to come.
    return !bus || attach(*bus, subscription);
}

std::optional<QDBusConnection> IBusBus::connection()
{
    const QString address = m_address();
    const QMutexLocker locker(&m_mutex);
    if (!m_connectionName.isEmpty()) {
        QDBusConnection current(m_connectionName);
        if (address == m_connectedAddress && current.isConnected())
            return current;
        disconnect();
    }
    if (address.isEmpty())
        return std::nullopt;

    const QString name = nextConnectionName();
    QDBusConnection fresh = QDBusConnection::connectToBus(address, name);
    if (!fresh.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        return std::nullopt;
    }
    m_connectionName = name;
    m_connectedAddress = address;
    // What was seen of an earlier daemon, or of none, may no longer hold.
    m_subscriptions.removeIf([](const Subscription &s) { return s.receiver.isNull(); });
    for (const Subscription &subscription : std::as_const(m_subscriptions)) {
        attach(fresh, subscription);
        QMetaObject::invokeMethod(subscription.receiver, "deliver", Qt::QueuedConnection);
    }
    return fresh;
}

void IBusBus::disconnect()
{
    if (m_connectionName.isEmpty())
        return;
    QDBusConnection::disconnectFromBus(m_connectionName);
    m_connectionName.clear();
    m_connectedAddress.clear();
}

bool IBusBus::attach(const QDBusConnection &connection, const Subscription &subscription) const
{
    QDBusConnection bus(connection);
    QObject *receiver = subscription.receiver.data();
    if (!receiver)
        return false;
    // Any sender: only IBus and its components speak on IBus's bus.
    switch (subscription.change) {
    case Change::Selected:
        return bus.connect(QString(), IBusNames::path, IBusNames::interface, QStringLiteral("GlobalEngineChanged"),
                           receiver, SLOT(deliver()));
    case Change::Enabled:
        // Installed or removed engines change which enabled names IBus can describe.
        return bus.connect(QString(), IBusNames::configPath, IBusNames::configInterface, QStringLiteral("ValueChanged"),
                           receiver, SLOT(valueChanged(QDBusMessage)))
               && bus.connect(QString(), IBusNames::path, IBusNames::interface, QStringLiteral("RegistryChanged"),
                              receiver, SLOT(deliver()));
    }
    return false;
}

#include "IBusBus.moc"
