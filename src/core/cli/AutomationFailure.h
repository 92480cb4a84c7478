#pragma once

#include "base/Error.h"
#include "platform/input/InputSources.h"

#include <QString>

#include <optional>

// The command line's error: a stable snake-case code and a fixed English
// sentence for scripts, the same in every language, and the user's own words
// from the string tables for people.
struct AutomationFailure
{
    enum class Kind {
        InvalidArguments,
        InvalidConfig,
        RuntimeUnavailable,
        ConfigWriteFailed,
        NoTarget,
        MissingSource,
        MissingSourceAfterSwitch,
        NotAppBundle,
        OpenFailed,
        InstallFailed,
        UninstallFailed,
        SwitchFailed,
        SwitchEndedWithoutResult,
        Busy,
        SecureInput,
        KeymapHeld,
        OperationFailed,
        EncodingFailed,
        InputMethodNotRunning,
        InputMethodNotAnswering,
        SessionBusUnreachable,
        NoKeyboard,
        GnomeExtensionOff,
        GnomeExtensionMissing,
        GnomeExtensionOutdated,
        GnomeExtensionFailed,
        GnomeExtensionPending,
        ChecksFailed,
    };

    Kind kind = Kind::OperationFailed;
    QString code;
    QString message;
    // What exactly went wrong, naming the file or the service; may be empty.
    QString detail = {};
    // The detail as the user reads it, in their language; empty: `detail` itself.
    QString shownDetail = {};

    bool operator==(const AutomationFailure &) const = default;

    static AutomationFailure of(Kind kind);

    static AutomationFailure invalidArguments() { return of(Kind::InvalidArguments); }
    static AutomationFailure invalidConfig() { return of(Kind::InvalidConfig); }
    static AutomationFailure runtimeUnavailable() { return of(Kind::RuntimeUnavailable); }
    static AutomationFailure configWriteFailed() { return of(Kind::ConfigWriteFailed); }
    static AutomationFailure noTarget() { return of(Kind::NoTarget); }
    // The pinned source is not selectable, with advice on what to do.
    static AutomationFailure missingSource() { return of(Kind::MissingSource); }
    // A one-shot switch found the source missing.
    static AutomationFailure missingSourceAfterSwitch() { return of(Kind::MissingSourceAfterSwitch); }
    static AutomationFailure notAppBundle() { return of(Kind::NotAppBundle); }
    static AutomationFailure openFailed() { return of(Kind::OpenFailed); }
    static AutomationFailure installFailed() { return of(Kind::InstallFailed); }
    static AutomationFailure uninstallFailed() { return of(Kind::UninstallFailed); }
    static AutomationFailure switchFailed() { return of(Kind::SwitchFailed); }
    // The one-shot switch never reported.
    static AutomationFailure switchEndedWithoutResult() { return of(Kind::SwitchEndedWithoutResult); }
    static AutomationFailure busy() { return of(Kind::Busy); }
    static AutomationFailure secureInput() { return of(Kind::SecureInput); }
    // A remote desktop client holds the keyboard layout.
    static AutomationFailure keymapHeld() { return of(Kind::KeymapHeld); }
    static AutomationFailure operationFailed() { return of(Kind::OperationFailed); }
    static AutomationFailure encodingFailed() { return of(Kind::EncodingFailed); }
    // The framework is out of reach because the session bus is; `detail` names the bus.
    static AutomationFailure sessionBusUnreachable() { return of(Kind::SessionBusUnreachable); }
    // The session is GNOME and Tolvar's shell extension is not running.
    static AutomationFailure gnomeExtensionOff() { return of(Kind::GnomeExtensionOff); }
    // What keeps the input sources out of reach, if anything; the framework is named in `detail`.
    static std::optional<AutomationFailure> forAvailability(InputSources::Availability availability,
                                                            const QString &framework);

    // The sentence shown to people, in the active language; `framework` names
    // the input method framework for the failures that are about it.
    QString humanText(const QString &framework) const;

    AutomationFailure withDetail(const QString &text) const;
    AutomationFailure withDetail(const Error &error) const;
};
