#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>

// Looks at Fcitx5's current input method every `interval` and calls `callback`
// when it differs from the last look. A look never blocks the thread: the
// answer comes back through the event loop, and a look still waiting for its
// answer makes the next one wait. Lives on its parent's thread, as its child.
class Fcitx5SelectionPoll : public QObject
{
public:
    Fcitx5SelectionPoll(std::function<void()> callback, std::chrono::milliseconds interval, QObject *parent);

    void setRunning(bool running);
    // What is current as this process last saw it otherwise.
    void setLast(const QString &current) { m_last = current; }

private:
    void look();

    std::function<void()> m_callback;
    QTimer m_timer;
    QString m_last;
    bool m_waiting = false;
};
