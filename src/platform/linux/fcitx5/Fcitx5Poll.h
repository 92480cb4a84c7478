#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

// Looks at something of Fcitx5's every `interval` and calls `changed` when it
// differs from the last look, the first look included, since nobody knows what
// happened before it. A look never blocks the thread: `look` answers through
// the event loop, and a look still waiting for its answer makes the next one
// wait. Lives on its parent's thread, as its child.
class Fcitx5Poll : public QObject
{
public:
    // Asks on `context`'s thread and calls `seen` with the answer, or with
    // nothing when it could not ask; false when it cannot ask at all.
    using Look = std::function<bool(QObject *context, std::function<void(std::optional<QString>)> seen)>;

    Fcitx5Poll(Look look, std::function<void()> changed, std::chrono::milliseconds interval, QObject *parent);

    void setRunning(bool running);
    // Whether it runs and has seen something, so that a change will be told.
    bool knows() const;
    // What this process last saw otherwise.
    void setLast(const QString &last);

private:
    void look();

    Look m_look;
    std::function<void()> m_changed;
    QTimer m_timer;
    std::optional<QString> m_last;
    quint64 m_lastSet = 0;
    bool m_waiting = false;
};
