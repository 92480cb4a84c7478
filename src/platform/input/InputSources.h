#pragma once

#include "platform/input/SourceProperties.h"
#include "platform/input/StackReport.h"

#include <QList>
#include <QString>

#include <functional>

class QObject;

// The keyboard input sources the system offers. An answer is kept only while
// the system's own change signals can say when it no longer holds; otherwise
// every call asks afresh. When the system's input-source service is not there,
// the answers are empty and selecting fails.
struct InputSources
{
    // Another status than 0 comes from the system, or is one of these.
    static constexpr qint32 unavailable = 1; // no input-source service to ask
    static constexpr qint32 refused = 2;     // the service declined the source
    static constexpr qint32 noReply = 3;     // the service did not answer in time
    // The source was selected, but the keyboard layout it names did not take effect.
    static constexpr qint32 layoutNotApplied = 4;

    // The enabled sources, in the system's own order.
    std::function<QList<SourceProperties>()> enabled;
    // The sources known by the identifier `id`, each telling whether it is enabled.
    std::function<QList<SourceProperties>(const QString &id)> matching;
    // The selected keyboard source's identifier; empty when none is or it cannot be told.
    std::function<QString()> currentID;
    // Makes `id` the selected source: 0 when the system accepted it, else a status.
    std::function<qint32(const QString &id)> select;
    // Whether secure keyboard entry is on, when no source may be switched.
    std::function<bool()> secureInput;

    // Calls `callback` on the thread of `context` after each change, until
    // `context` is destroyed; false when the system cannot report the change.
    using Observe = std::function<bool(QObject *context, std::function<void()> callback)>;
    // The selected source changed.
    Observe observeSelected;
    // The set of enabled sources changed.
    Observe observeEnabled;

    // The backend's name in reports: "ibus", "gnome", "fcitx5", "plasma", "x11" or "macos".
    QString backend = {};
    // Whether a Chinese, Japanese, Korean or Vietnamese source takes effect only
    // once focus moves, so that selecting it needs the focus helper.
    bool cjkvNeedsFocus = false;
    // Whether observeSelected's callbacks are needed now; they are until told
    // otherwise. A backend that can only poll polls only while they are.
    std::function<void(bool needed)> needSelected = {};
    // Whether another party, such as a remote desktop client, holds the
    // keyboard layout now, so that a switch would take it from them.
    // observeSelected also reports when that changes.
    std::function<bool()> keymapHeld = [] { return false; };

    // How the backend learns that the selected source changed: from the
    // system's own signals, or by looking again and again.
    enum class Following { announced, polled };
    // Asked afresh at each call: a backend may change how it follows.
    std::function<Following()> following = [] { return Following::announced; };

    enum class Availability {
        available,
        // The input method framework is not running.
        notRunning,
        // It runs but does not answer in a bounded time.
        notAnswering,
        // The desktop keeps the sources to itself (GNOME Shell) and Tolvar's
        // extension for it does not run, so nothing can be read or switched:
        // not installed,
        extensionMissing,
        // turned off,
        extensionOff,
        // made for other versions of the shell,
        extensionOutdated,
        // failed when the shell started it,
        extensionFailed,
        // or new to the shell, which loads it at the next login.
        extensionPending,
        // The framework is reached over the session bus, and that is missing or does not answer.
        sessionBusUnreachable,
        // The desktop's stack answers but has no keyboard layout (KWin with no
        // keyboard attached): there is nothing to read or switch.
        noKeyboard,
    };
    // Asked afresh at each call, in a bounded time, so a framework or an
    // extension that starts later is seen.
    std::function<Availability()> availability = [] { return Availability::available; };
    // Turns on what the backend needs from the desktop, for this and later
    // sessions (GNOME: Tolvar's shell extension); false when that failed.
    std::function<bool()> enableCompanion = [] { return true; };
    // What the stack tells of itself, for a check of the machine; asked in a
    // bounded time, and only while the stack itself can be reached.
    std::function<StackReport()> report = [] { return StackReport{}; };
    // Whether the desktop's own keyboard menu shows Tolvar now (GNOME Shell's,
    // through the extension), which serves where no tray shows its icon.
    std::function<bool()> inKeyboardMenu = [] { return false; };

    // Selects `id`, asking again up to three times, after `firstPause` and then
    // twice as long each time, while the system turns it down: IBus refuses a
    // switch while another one is under way and takes it a moment later.
    static qint32 selectPatiently(const InputSources &system, const QString &id, unsigned long firstPauseMs);

    static InputSources live();
    // A system without input sources: no sources, nothing selected, every select `unavailable`.
    static InputSources none();
};
