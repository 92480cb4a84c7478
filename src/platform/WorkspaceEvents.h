#pragma once

#include <QtGlobal>

#include <functional>

class QObject;

// Desktop events that can take the pinned source away. Each observe call
// delivers on the thread of `context` until it is destroyed, and answers
// false when this system cannot report such events.
struct WorkspaceEvents
{
    std::function<bool(QObject *context, std::function<void()> callback)> observeWake;
    // The callback receives the process id of the application that became active.
    std::function<bool(QObject *context, std::function<void(qint64 pid)> callback)> observeActivation;

    static WorkspaceEvents live();
};
