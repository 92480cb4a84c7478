#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// Which input-method stack owns the current source in this session. Probed
// once per process; everything above the port sees only InputSources.
namespace LinuxInputBackend {

enum class Kind { ibus, gnome, fcitx5, plasma, x11 };

struct Session
{
    QString requested;    // $TOLVAR_INPUT_BACKEND: a backend name, or empty
    QStringList desktops; // $XDG_CURRENT_DESKTOP, split at ':'
    bool fcitx5Running = false;
    bool plasmaLayouts = false;
    bool busAnswers = true;         // whether the session bus could be asked the two above
    bool typesThroughFcitx = false; // the input-method variables name Fcitx
    bool x11Session = false;        // an X11 session, not a Wayland one
    bool typesThroughIBus = false;  // the input-method variables name IBus
};

// The backend for `session`: a valid request wins; Fcitx5 handles the keyboard
// whenever it runs, unless the session types through IBus (its input-method
// variables name IBus); then the desktop's own stack; IBus otherwise. A Plasma
// X11 session without Plasma's keyboard service (gone with Plasma 6.8) that
// does not type through IBus has the X server's layout itself. Without
// the session bus the variables and the desktop decide, so that the stack in
// use reports the bus rather than IBus being blamed.
Kind choose(const Session &session);
std::optional<Kind> parse(const QString &name);
QString name(Kind kind);
// The session as the environment and the session bus describe it.
Session probe();

} // namespace LinuxInputBackend
