#include "platform/linux/dbus/SignalReceiver.h"

SignalReceiver::SignalReceiver(std::function<void(const QDBusMessage &)> callback, QObject *parent)
    : QObject(parent)
    , m_callback(std::move(callback))
{}

SignalReceiver::SignalReceiver(std::function<void()> callback, QObject *parent)
    : SignalReceiver([callback = std::move(callback)](const QDBusMessage &) { callback(); }, parent)
{}

void SignalReceiver::deliver()
{
    m_callback(QDBusMessage());
}

void SignalReceiver::receive(const QDBusMessage &message)
{
    m_callback(message);
}

void SignalReceiver::deliverWhenFalse(bool flag)
{
    if (!flag)
        m_callback(QDBusMessage());
}
