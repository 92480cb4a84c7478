#include "platform/linux/ibus/IBusBus.h"

#include "platform/linux/dbus/BusProbe.h"
#include "platform/linux/ibus/IBusNames.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QMetaObject>
#include <QObject>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

QString nextConnectionName()
{
    static int counter = 0;
    return QStringLiteral("tolvar-ibus-%1").arg(++counter);
}

} // namespace

// One connection attempt, shared by the bus's thread and the thread that makes
// it: the lock guards what both touch.
struct IBusBus::Attempt
{
    QString address;
    QString name = nextConnectionName();
    std::mutex mutex;
    std::condition_variable finished;
    std::optional<Availability> result;
    bool abandoned = false;

    // On its own thread: a connection that hangs holds up only that thread.
    static void run(const std::shared_ptr<Attempt> &attempt)
    {
        const BusProbe::Result knocked = BusProbe::knock(attempt->address, std::chrono::milliseconds(knockLimitMs));
        Availability result =
            knocked == BusProbe::Result::Absent ? Availability::notRunning : Availability::notAnswering;
        if (knocked == BusProbe::Result::Answered) {
            if (QDBusConnection::connectToBus(attempt->address, attempt->name).isConnected())
                result = Availability::available;
            else
                QDBusConnection::disconnectFromBus(attempt->name);
        }
        const std::lock_guard<std::mutex> lock(attempt->mutex);
        attempt->result = result;
        if (attempt->abandoned && result == Availability::available)
            QDBusConnection::disconnectFromBus(attempt->name);
        attempt->finished.notify_all();
    }

    std::optional<Availability> waitFor(int milliseconds)
    {
        std::unique_lock<std::mutex> lock(mutex);
        finished.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return result.has_value(); });
        return result;
    }

    void abandon()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        abandoned = true;
        if (result == Availability::available)
            QDBusConnection::disconnectFromBus(name);
    }
};

IBusBus::IBusBus(std::function<QString()> address, std::function<void()> sent)
    : m_address(std::move(address))
    , m_sent(std::move(sent))
{}

IBusBus::~IBusBus()
{
    // A connection made after this bus is gone would be kept by nobody.
    if (m_attempt)
        m_attempt->abandon();
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
    if (m_sent)
        m_sent();
    QDBusMessage reply = bus->call(message, QDBus::Block, timeoutMs);
    if (reply.type() == QDBusMessage::ErrorMessage && QDBusError(reply).type() == QDBusError::NoReply) {
        // A daemon that stopped answering would cost every later call its whole
        // wait: knock again before the next one.
        disconnect();
        m_availability = Availability::notAnswering;
    }
    return reply;
}

IBusBus::Availability IBusBus::availability()
{
    connection();
    return m_availability;
}

QObject *IBusBus::observe(QObject *context, std::function<void(const QDBusMessage &)> callback)
{
    if (!context)
        return nullptr;
    auto *receiver = new SignalReceiver(std::move(callback), context);
    const Subscription subscription{receiver};
    const std::optional<QDBusConnection> bus = connection();
    m_subscriptions.removeIf([](const Subscription &s) { return s.receiver.isNull(); });
    m_subscriptions << subscription;
    // Without IBus now, the subscription waits for the connection to come.
    return !bus || attach(*bus, subscription) ? receiver : nullptr;
}

std::optional<QDBusConnection> IBusBus::connection()
{
    // A daemon that went away closed the connection; only then can its
    // successor have published another address.
    if (!m_connectionName.isEmpty()) {
        QDBusConnection current(m_connectionName);
        if (current.isConnected()) {
            m_availability = Availability::available;
            return current;
        }
        disconnect();
    }
    const QString address = m_address();
    if (m_attempt && m_attempt->address != address) {
        m_attempt->abandon();
        m_attempt.reset();
    }
    if (address.isEmpty()) {
        m_availability = Availability::notRunning;
        return std::nullopt;
    }
    if (!m_attempt) {
        if (address == m_failedAddress && !m_retryAt.hasExpired())
            return std::nullopt;
        m_attempt = std::make_shared<Attempt>();
        m_attempt->address = address;
        std::thread(&Attempt::run, m_attempt).detach();
    }

    const std::optional<Availability> result =
        m_attempt->waitFor(m_attemptedBefore ? reconnectPatienceMs : knockLimitMs + callTimeoutMs);
    m_attemptedBefore = true;
    if (!result) {
        m_availability = Availability::notAnswering;
        return std::nullopt;
    }
    const std::shared_ptr<Attempt> attempt = std::exchange(m_attempt, nullptr);
    m_availability = *result;
    if (*result != Availability::available) {
        m_failedAddress = address;
        m_retryAt = QDeadlineTimer(retryAfterMs);
        return std::nullopt;
    }
    m_failedAddress.clear();
    return adopt(*attempt);
}

std::optional<QDBusConnection> IBusBus::adopt(const Attempt &attempt)
{
    QDBusConnection fresh(attempt.name);
    ++m_generation;
    m_connectionName = attempt.name;
    m_connectedAddress = attempt.address;
    // What was seen of an earlier daemon, or of none, may no longer hold.
    m_subscriptions.removeIf([](const Subscription &s) { return s.receiver.isNull(); });
    for (const Subscription &subscription : std::as_const(m_subscriptions)) {
        attach(fresh, subscription);
        QMetaObject::invokeMethod(subscription.receiver, &SignalReceiver::deliver, Qt::QueuedConnection);
    }
    return fresh;
}

void IBusBus::disconnect()
{
    if (m_connectionName.isEmpty())
        return;
    QDBusConnection::disconnectFromBus(m_connectionName);
    ++m_generation;
    m_connectionName.clear();
    m_connectedAddress.clear();
}

bool IBusBus::attach(const QDBusConnection &connection, const Subscription &subscription) const
{
    QDBusConnection bus(connection);
    SignalReceiver *receiver = subscription.receiver.data();
    if (!receiver)
        return false;
    // Any sender: only IBus and its components speak on IBus's bus. One match
    // rule per interface, whatever the signal, is one message fewer each.
    return bus.connect(QString(), IBusNames::path, IBusNames::interface, QString(), receiver,
                       SLOT(receive(QDBusMessage)))
           && bus.connect(QString(), IBusNames::configPath, IBusNames::configInterface, QString(), receiver,
                          SLOT(receive(QDBusMessage)));
}
