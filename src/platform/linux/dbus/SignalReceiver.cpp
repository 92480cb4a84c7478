#include "platform/linux/dbus/SignalReceiver.h"

SignalReceiver::SignalReceiver(std::function<void()> callback, QObject *parent)
    : m_callback(std::move(callback))
{
    // The parent may live on another thread than the caller's: made there, and then adopted.
    if (parent) {
        moveToThread(parent->thread());
        setParent(parent);
    }
}

void SignalReceiver::deliver()
{
    m_callback();
}

void SignalReceiver::deliverWhenFalse(bool flag)
{
    if (!flag)
        m_callback();
}
