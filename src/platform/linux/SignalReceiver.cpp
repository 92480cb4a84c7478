#include "platform/linux/SignalReceiver.h"

SignalReceiver::SignalReceiver(std::function<void()> callback, QObject *parent)
    : QObject(parent)
    , m_callback(std::move(callback))
{}

void SignalReceiver::deliver()
{
    m_callback();
}

void SignalReceiver::deliverWhenFalse(bool flag)
{
    if (!flag)
        m_callback();
}
