#pragma once

#include "platform/input/InputSources.h"

#include <QEventLoop>
#include <QStringList>
#include <QTimer>

#include <csignal>
#include <functional>

// What a backend says as the engine asks it at rest: inside a turning event
// loop (what it knows is kept only there), with the stack's process stopped,
// so that only what the stack's signals said before can answer.
struct StoppedStack
{
    QString current;
    QStringList enabled;

    static void inLoop(const std::function<void()> &work)
    {
        QEventLoop loop;
        QTimer::singleShot(0, &loop, [&] {
            work();
            loop.quit();
        });
        loop.exec();
    }

    // After one look with the stack running (unless `warm` is false) and the engine's word that it keeps a source.
    static StoppedStack look(const InputSources &backend, qint64 pid, bool warm = true)
    {
        if (warm)
            inLoop([&] {
                backend.currentID();
                backend.enabled();
            });
        if (backend.needSelected)
            backend.needSelected(true);
        ::kill(static_cast<pid_t>(pid), SIGSTOP);
        StoppedStack seen;
        inLoop([&] {
            seen.current = backend.currentID();
            for (const SourceProperties &source : backend.enabled())
                seen.enabled << source.id.toString();
        });
        ::kill(static_cast<pid_t>(pid), SIGCONT);
        return seen;
    }
};
