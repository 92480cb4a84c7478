#include "core/sources/SwitchOutcome.h"

SwitchOutcome::SwitchOutcome(Kind kind, QString message)
    : m_kind(kind)
    , m_message(std::move(message))
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

SwitchOutcome SwitchOutcome::failed(const QString &message)
{
    return SwitchOutcome(Kind::Failed, message);
}
