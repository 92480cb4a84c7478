#pragma once

#include <QtGlobal>

#include <chrono>
#include <functional>

class QObject;

// The events that make the engine look again. Each subscription delivers on
// the thread of `context` until it is destroyed.
struct EnforcementTriggers
{
    using Subscribe = std::function<void(QObject *context, std::function<void()> callback)>;

    Subscribe selectionChanged = {};
    // The set of enabled sources changed; false when the system cannot tell.
    std::function<bool(QObject *context, std::function<void()> callback)> listChanged = {};
    // Whether the system announces each change now: then a tick that finds
    // what the last look found has nothing to tell, and says nothing.
    std::function<bool()> announced = {};
    Subscribe configChanged = {};
    Subscribe wake = {};
    std::function<void(QObject *context, std::function<void(qint64 pid)> callback)> activation = {};
    std::chrono::milliseconds tick{2000};
    // Told, each time the engine reads the configuration, whether a source is
    // pinned and kept; a trigger that costs while idle runs only while it is.
    std::function<void(bool keeping)> keeping = {};

    static EnforcementTriggers live();
    // Nothing but what the owner asks for; no timer either.
    static EnforcementTriggers none();
};
