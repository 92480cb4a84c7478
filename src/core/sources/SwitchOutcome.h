#pragma once

#include "core/l10n/LocalizedText.h"

#include <QString>

#include <optional>

// The result of one request to bring the pinned source back.
class SwitchOutcome
{
public:
    enum class Kind {
        Success,       // the pinned source is current, or there was nothing to do
        SecureInput,   // not tried: secure text entry is on
        KeymapHeld,    // not tried: someone else, such as a remote desktop client, holds the keyboard layout
        MissingSource, // nothing pinned, or the pinned source cannot be selected
        Busy,          // superseded, cancelled, rate-limited or not allowed now; not worth reporting
        Failed,        // tried, and it did not work
    };

    static SwitchOutcome success();
    static SwitchOutcome secureInput();
    static SwitchOutcome keymapHeld();
    static SwitchOutcome missingSource();
    static SwitchOutcome busy();
    static SwitchOutcome failed(const LocalizedText &reason);

    Kind kind() const { return m_kind; }
    bool isBusy() const { return m_kind == Kind::Busy; }
    // Empty unless the switch failed.
    const LocalizedText &reason() const { return m_reason; }
    // What people are told, in the active language; none for a success. The
    // window's warning and the command line's error say the same.
    std::optional<QString> warning() const;

    bool operator==(const SwitchOutcome &) const = default;

private:
    SwitchOutcome(Kind kind, LocalizedText reason = {});

    Kind m_kind;
    LocalizedText m_reason;
};
