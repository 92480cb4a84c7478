#pragma once

#include <functional>

class QObject;

// Whether the desktop shows tray icons. A tray icon made before its host
// exists is never shown on some desktops, so callers wait for one.
struct TrayHost
{
    // Calls `present` once, on the thread of `context`, as soon as a tray host
    // exists: at once when there is one, later when one appears. Never when
    // `context` is destroyed first or the session cannot have a tray.
    std::function<void(QObject *context, std::function<void()> present)> whenPresent;

    static TrayHost live();
    // A session without any tray.
    static TrayHost none();
};
