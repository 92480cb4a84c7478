#pragma once

#include <QObject>

#include <functional>

// Turns a D-Bus signal into a call of `callback` on the thread of its parent,
// for as long as the parent lives. The parent may be on any thread.
class SignalReceiver : public QObject
{
    Q_OBJECT
public:
    SignalReceiver(std::function<void()> callback, QObject *parent);

public slots:
    void deliver();
    // For signals that carry a flag, such as logind's PrepareForSleep(false) on waking.
    void deliverWhenFalse(bool flag);

private:
    std::function<void()> m_callback;
};
