#pragma once

#include <QEventLoop>
#include <QTimer>

#include <functional>

// Runs the event loop until `done` or the time is up; says whether `done` came.
// Sleeps between looks, so a waiting test leaves the processor to the others.
inline bool spinUntil(const std::function<bool()> &done, int timeoutMs)
{
    if (done())
        return true;
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    look.start(5);
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    loop.exec();
    return done();
}
