#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

// What a check of the machine reads of the session besides its input sources.
// Every answer comes in a bounded time, and nothing is changed.
struct SessionFacts
{
    struct Stack
    {
        // The input stack in use, by backend name ("ibus", "gnome"...).
        QString backend;
        // What chose it, as read: variables and bus names.
        QStringList evidence;
        // Every stack found running, the one in use among them when it runs.
        QStringList running;
    };

    std::function<Stack()> stack;
    // "x11", "wayland", or empty for a session that is neither.
    std::function<QString()> sessionType;
    // What shows tray icons, by the name it holds ("org.kde.StatusNotifierWatcher",
    // "_NET_SYSTEM_TRAY_S0"); none when nothing does.
    std::function<std::optional<QString>()> trayHost;

    static SessionFacts live();
};
