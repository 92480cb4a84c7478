#include "platform/linux/fcitx5/Fcitx5Poll.h"

Fcitx5Poll::Fcitx5Poll(Look look, std::function<void()> changed, std::chrono::milliseconds interval, QObject *parent)
    : QObject(parent)
    , m_look(std::move(look))
    , m_changed(std::move(changed))
    , m_timer(this)
{
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &Fcitx5Poll::look);
}

void Fcitx5Poll::setRunning(bool running)
{
    // What changed before the first look is told by it: the sooner, the better.
    if (running && !m_timer.isActive()) {
        m_timer.start();
        look();
    } else if (!running)
        m_timer.stop();
}

bool Fcitx5Poll::knows() const
{
    return m_timer.isActive() && m_last.has_value();
}

void Fcitx5Poll::setLast(const QString &last)
{
    m_last = last;
    // A look still on its way was answered before: taken now, it would hide
    // the next switch to what it saw.
    ++m_lastSet;
}

void Fcitx5Poll::look()
{
    if (m_waiting)
        return;
    m_waiting = true;
    const bool asked = m_look(this, [this, lastSet = m_lastSet](std::optional<QString> seen) {
        m_waiting = false;
        if (!seen || seen == m_last || lastSet != m_lastSet)
            return;
        m_last = seen;
        m_changed();
    });
    if (!asked)
        m_waiting = false;
}
