#include "core/sources/SwitchOutcome.h"

#include "core/l10n/L10n.h"

SwitchOutcome::SwitchOutcome(Kind kind, LocalizedText reason)
    : m_kind(kind)
    , m_reason(std::move(reason))
{}

SwitchOutcome SwitchOutcome::success()
{
    return SwitchOutcome(Kind::Success);
}

SwitchOutcome SwitchOutcome::secureInput()
{
    return SwitchOutcome(Kind::SecureInput);
}

SwitchOutcome SwitchOutcome::keymapHeld()
{
    return SwitchOutcome(Kind::KeymapHeld);
}

SwitchOutcome SwitchOutcome::missingSource()
{
    return SwitchOutcome(Kind::MissingSource);
}

SwitchOutcome SwitchOutcome::busy()
{
    return SwitchOutcome(Kind::Busy);
}

SwitchOutcome SwitchOutcome::failed(const LocalizedText &reason)
{
    return SwitchOutcome(Kind::Failed, reason);
}

std::optional<QString> SwitchOutcome::warning() const
{
    switch (m_kind) {
    case Kind::Success: return std::nullopt;
    case Kind::SecureInput: return L10n::text("enf.secure");
    case Kind::KeymapHeld: return L10n::text("enf.keymap-held");
    case Kind::MissingSource: return L10n::text("warn.missing");
    case Kind::Busy: return L10n::text("warn.busy");
    case Kind::Failed: return L10n::text("warn.switch").arg(m_reason.text());
    }
    return std::nullopt;
}
