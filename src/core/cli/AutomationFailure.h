#pragma once

#include "platform/InputSources.h"

#include <QString>

#include <optional>

// The command line's error: a stable snake-case code and a fixed English
// sentence, the same in every language.
struct AutomationFailure
{
    QString code;
    QString message;
    // What exactly went wrong, naming the file or the service; may be empty.
    QString detail = {};

    bool operator==(const AutomationFailure &) const = default;

    static AutomationFailure invalidArguments();
    static AutomationFailure invalidConfig();
    static AutomationFailure runtimeUnavailable();
    static AutomationFailure configWriteFailed();
    static AutomationFailure noTarget();
    // The pinned source is not selectable, with advice on what to do.
    static AutomationFailure missingSource();
    // A one-shot switch found the source missing.
    static AutomationFailure missingSourceAfterSwitch();
    static AutomationFailure notAppBundle();
    static AutomationFailure openFailed();
    static AutomationFailure installFailed();
    static AutomationFailure uninstallFailed();
    static AutomationFailure switchFailed();
    // The one-shot switch never reported.
    static AutomationFailure switchEndedWithoutResult();
    static AutomationFailure busy();
    static AutomationFailure secureInput();
    static AutomationFailure operationFailed();
    static AutomationFailure encodingFailed();
    // The input method framework, named in `detail`, is not running or does not answer.
    static AutomationFailure inputMethodNotRunning(const QString &framework);
    static AutomationFailure inputMethodNotAnswering(const QString &framework);
    // The framework is out of reach because the session bus is; `detail` names the bus.
    static AutomationFailure sessionBusUnreachable();
    // The session is GNOME and Tolvar's shell extension is not running.
    static AutomationFailure gnomeExtensionMissing();
    // What keeps the input sources out of reach, if anything.
    static std::optional<AutomationFailure> forAvailability(InputSources::Availability availability,
                                                            const QString &framework);

    AutomationFailure withDetail(const QString &text) const;
};
