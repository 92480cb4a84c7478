#include "core/sources/RuntimeState.h"

#include <array>
#include <utility>

namespace {

using Raw = std::pair<RuntimeState::Case, const char *>;

constexpr std::array<Raw, 10> rawValues{{
    {RuntimeState::Setup, "setup"},
    {RuntimeState::Paused, "paused"},
    {RuntimeState::Keeping, "keeping"},
    {RuntimeState::Switching, "switching"},
    {RuntimeState::Waiting, "waiting"},
    {RuntimeState::SecureInput, "secure_input"},
    {RuntimeState::KeymapHeld, "keymap_held"},
    {RuntimeState::MissingSource, "missing_source"},
    {RuntimeState::Error, "error"},
    {RuntimeState::Stopped, "stopped"},
}};

} // namespace

const QList<RuntimeState> &RuntimeState::allCases()
{
    static const QList<RuntimeState> cases = [] {
        QList<RuntimeState> result;
        for (const Raw &raw : rawValues)
            result << raw.first;
        return result;
    }();
    return cases;
}

std::optional<RuntimeState> RuntimeState::fromRaw(const QString &raw)
{
    for (const Raw &candidate : rawValues) {
        if (raw == QLatin1String(candidate.second))
            return candidate.first;
    }
    return std::nullopt;
}

QString RuntimeState::raw() const
{
    for (const Raw &candidate : rawValues) {
        if (candidate.first == m_case)
            return QLatin1String(candidate.second);
    }
    return {};
}

bool RuntimeState::isNeutral() const
{
    return m_case == Paused || m_case == Stopped;
}

bool RuntimeState::isTransient() const
{
    return m_case == Switching || m_case == Waiting;
}

RuntimeState RuntimeState::derive(const RuntimeInputs &inputs)
{
    if (!inputs.running)
        return Stopped;
    if (inputs.configError)
        return Error;
    // Automatic work and its warnings count only while keeping is on; manual
    // ones show even when it is off.
    const bool busy = inputs.switching || (inputs.enabled && inputs.automaticSwitching);
    const bool warned = inputs.manualWarning.has_value() || (inputs.enabled && inputs.automaticWarning.has_value());
    if (!inputs.enabled && !busy && !warned)
        return Paused;
    if (!inputs.pinnedID || inputs.pinnedID->isEmpty())
        return Setup;
    // Every source would look missing; the cause is elsewhere.
    if (inputs.availability != InputSources::Availability::available)
        return Error;
    if (!inputs.pinnedName)
        return MissingSource;
    if (inputs.secureInput)
        return SecureInput;
    // What the current source is then tells nothing.
    if (inputs.keymapHeld)
        return KeymapHeld;
    if (busy)
        return Switching;
    if (warned)
        return Error;
    return inputs.currentID == *inputs.pinnedID ? Keeping : Waiting;
}

const char *RuntimeState::textKey() const
{
    switch (m_case) {
    case Setup: return "state.setup";
    case Paused: return "state.paused";
    case Keeping: return "state.active";
    case Switching: return "state.switching";
    case Waiting: return "state.waiting";
    case SecureInput: return "state.secure";
    case KeymapHeld: return "state.keymap-held";
    case MissingSource: return "state.missing";
    case Error: return "state.error";
    case Stopped: return "state.stopped";
    }
    return "";
}
