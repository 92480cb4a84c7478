#include "core/sources/SwitchOutcome.h"

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
