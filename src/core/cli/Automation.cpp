#include "core/cli/Automation.h"

#include <cassert>
#include <utility>

namespace {

std::optional<AutomationTarget> targetFor(const Config &config, const QList<InputChoice> &choices)
{
    if (!config.sourceID)
        return std::nullopt;
    for (const InputChoice &choice : choices) {
        if (choice.id == *config.sourceID)
            return AutomationTarget{*config.sourceID, choice.name, true};
    }
    return AutomationTarget{*config.sourceID, std::nullopt, false};
}

} // namespace

Automation::Automation(AutomationServices services)
    : m_services(std::move(services))
{}

Expected<AutomationStatus, AutomationFailure> Automation::status(const std::optional<Config> &given) const
{
    Config config;
    if (given) {
        config = *given;
    } else {
        const Expected<Config> loaded = m_services.load();
        if (!loaded)
            return AutomationFailure::invalidConfig().withDetail(loaded.error());
        config = loaded.value();
    }

    // Without the framework there is nothing to ask; an empty answer would read as "no source".
    const InputSources::Availability availability = m_services.availability();
    const std::optional<AutomationFailure> blocked =
        AutomationFailure::forAvailability(availability, m_services.framework);
    const bool reachable = !blocked;
    const InputChoice current = reachable ? m_services.current() : InputChoice{};
    const std::optional<AutomationTarget> target =
        config.sourceID ? targetFor(config, reachable ? m_services.choices() : QList<InputChoice>()) : std::nullopt;
    const Expected<bool> running = m_services.running();
    if (!running)
        return AutomationFailure::runtimeUnavailable().withDetail(running.error());
    RuntimeInputs inputs;
    inputs.running = running.value();
    inputs.enabled = config.enabled;
    inputs.pinnedID = config.sourceID;
    inputs.pinnedName = target && target->available ? target->name : std::nullopt;
    inputs.secureInput = m_services.secureInput();
    inputs.keymapHeld = reachable && m_services.keymapHeld();
    inputs.currentID = current.id;
    inputs.availability = availability;

    AutomationStatus status;
    status.enabled = config.enabled;
    status.running = running.value();
    status.state = RuntimeState::derive(inputs);
    status.current = {current.id, current.name};
    status.target = target;
    status.loginEnabled = m_services.loginEnabled();
    status.onboardingCompleted = config.onboardingCompleted;
    status.backend = m_services.backend;
    status.backendError = blocked;
    if (reachable)
        status.following = m_services.following();
    if (m_services.trayHost())
        status.shownIn << QStringLiteral("tray");
    if (reachable && m_services.inKeyboardMenu())
        status.shownIn << QStringLiteral("keyboard_menu");
    return status;
}

Expected<AutomationStatus, AutomationFailure> Automation::setKeeping(CLIRequest::Command command) const
{
    assert(command == CLIRequest::Command::Pause || command == CLIRequest::Command::Resume
           || command == CLIRequest::Command::Toggle);
    // Its report needs the instance lock: a lock that cannot be probed must fail before the write.
    if (const Expected<bool> running = m_services.running(); !running)
        return AutomationFailure::runtimeUnavailable().withDetail(running.error());
    const auto turnsOn = [command](const Config &config) {
        return command == CLIRequest::Command::Resume || (command == CLIRequest::Command::Toggle && !config.enabled);
    };
    // The pin is checked with the input sources before the lock is taken, so that
    // other writers never wait on the framework. The verdict holds only for the
    // pin it was given: one changed in between is checked again, under the lock.
    std::optional<std::pair<std::optional<QString>, Expected<void, AutomationFailure>>> early;
    if (command != CLIRequest::Command::Pause) {
        if (const Expected<Config> seen = m_services.load(); seen && turnsOn(seen.value()))
            early.emplace(seen->sourceID, requireTarget(seen->sourceID));
    }
    const Expected<Config, AutomationFailure> written =
        editConfig([&](Config &config) -> Expected<void, AutomationFailure> {
            const bool turnOn = turnsOn(config);
            if (turnOn) {
                const Expected<void, AutomationFailure> required =
                    early && early->first == config.sourceID ? early->second : requireTarget(config.sourceID);
                if (!required)
                    return required.error();
            }
            config.enabled = turnOn;
            return {};
        });
    if (!written)
        return written.error();
    return status(written.value());
}

Expected<void, AutomationFailure> Automation::requireTarget(const std::optional<QString> &sourceID) const
{
    if (!sourceID || sourceID->isEmpty())
        return AutomationFailure::noTarget();
    if (const auto blocked = sourcesBlocked())
        return *blocked;
    for (const InputChoice &choice : m_services.choices()) {
        if (choice.id == *sourceID)
            return {};
    }
    return AutomationFailure::missingSource();
}

std::optional<AutomationFailure> Automation::sourcesBlocked() const
{
    return AutomationFailure::forAvailability(m_services.availability(), m_services.framework);
}

Expected<Config, AutomationFailure> Automation::editConfig(const Edit &edit) const
{
    // The store knows nothing of our failures: carry one out beside it.
    std::optional<AutomationFailure> refused;
    const Expected<Config> written = m_services.update([&](Config &config) -> Expected<void> {
        if (const auto edited = edit(config); !edited) {
            refused = edited.error();
            return Error::other(edited.error().message);
        }
        return {};
    });
    if (written)
        return written.value();
    if (refused)
        return *refused;
    if (written.error().domain() == Error::Domain::Decode)
        return AutomationFailure::invalidConfig().withDetail(written.error());
    return AutomationFailure::configWriteFailed().withDetail(written.error());
}
