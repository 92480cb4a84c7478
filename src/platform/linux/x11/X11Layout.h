#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QObject;

// The X keyboard layout of an X11 session. IBus changes its engine over D-Bus
// but leaves the X layout alone: its own tools run setxkbmap afterwards with
// the engine's layout, variant and options, and so does this.
namespace X11Layout {

// The XKB names an engine carries or the server reports; empty is none.
struct Names
{
    QString layout;
    QString variant;
    QString options;

    bool operator==(const Names &) const = default;
};

// Whether the session is an X11 one. Under Wayland the compositor owns the
// keymap, and setxkbmap would reach only the X clients of Xwayland.
bool isX11Session();

// setxkbmap's arguments for `names`, "default" counting as none, as IBus does;
// none when the names hold no layout.
std::optional<QStringList> setArguments(const Names &names);

// The names in the server's _XKB_RULES_NAMES root property, which setxkbmap
// sets: rules, model, layout, variant and options, each ended by a NUL.
Names parseRulesNames(const QByteArray &property);

// Sets the layout, then reads it back: true only when the server reports it.
bool apply(const Names &names);

// What the server reports now; none when it cannot be asked.
std::optional<Names> current();

// Calls `callback` after each change of the server's layout names, until
// `context`, which lives on the calling thread, is destroyed; false when the
// server cannot be reached. setxkbmap sends no other notice.
bool observe(QObject *context, std::function<void()> callback);

// Whether the server reports another layout or variant than `names` sets;
// false when the names hold no layout or the server cannot be asked.
bool differs(const Names &names);

} // namespace X11Layout
