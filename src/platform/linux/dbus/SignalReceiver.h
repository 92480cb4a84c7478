#pragma once

#include <QDBusMessage>
#include <QObject>

#include <functional>

// Turns D-Bus signals into calls of `callback` for as long as its parent
// lives. Made on the parent's thread as its child, so QtDBus posts each signal
// there.
class SignalReceiver : public QObject
{
    Q_OBJECT
public:
    // `callback` gets the signal's message, or an empty one from deliver().
    SignalReceiver(std::function<void(const QDBusMessage &)> callback, QObject *parent);
    SignalReceiver(std::function<void()> callback, QObject *parent);

public slots:
    void deliver();
    void receive(const QDBusMessage &message);
    // For signals that carry a flag, such as logind's PrepareForSleep(false) on waking.
    void deliverWhenFalse(bool flag);

private:
    std::function<void(const QDBusMessage &)> m_callback;
};
