#include "core/cli/AutomationFailure.h"

#include "core/sources/SourcesAvailability.h"

namespace {

AutomationFailure make(const char *code, const char *message)
{
    return {QString::fromLatin1(code), QString::fromLatin1(message)};
}

} // namespace

AutomationFailure AutomationFailure::invalidArguments()
{
    return make("invalid_arguments", "Invalid command or arguments. Run tolvar help for usage.");
}

AutomationFailure AutomationFailure::invalidConfig()
{
    return make("invalid_config", "Unable to read the configuration. The file has not been changed.");
}

AutomationFailure AutomationFailure::runtimeUnavailable()
{
    return make("runtime_unavailable", "Unable to inspect the running application.");
}

AutomationFailure AutomationFailure::configWriteFailed()
{
    return make("config_write_failed", "Unable to update the configuration.");
}

AutomationFailure AutomationFailure::noTarget()
{
    return make("no_target", "No input source is selected. Use tolvar set <source-id> first.");
}

AutomationFailure AutomationFailure::missingSource()
{
    return make("missing_source",
                "The selected input source is not available. Run tolvar list and select an available source.");
}

AutomationFailure AutomationFailure::missingSourceAfterSwitch()
{
    return make("missing_source", "The selected input source is not available.");
}

AutomationFailure AutomationFailure::notAppBundle()
{
    return make("not_app_bundle", "This command must run from the packaged Tolvar application.");
}

AutomationFailure AutomationFailure::openFailed()
{
    return make("open_failed", "Unable to open Tolvar.");
}

AutomationFailure AutomationFailure::installFailed()
{
    return make("install_failed", "Unable to install the login item.");
}

AutomationFailure AutomationFailure::uninstallFailed()
{
    return make("uninstall_failed", "Unable to remove the login item.");
}

AutomationFailure AutomationFailure::switchFailed()
{
    return make("switch_failed", "The input source could not be switched.");
}

AutomationFailure AutomationFailure::switchEndedWithoutResult()
{
    return make("switch_failed", "The switching operation ended without a result.");
}

AutomationFailure AutomationFailure::busy()
{
    return make("busy", "Another switching operation is in progress.");
}

AutomationFailure AutomationFailure::secureInput()
{
    return make("secure_input", "Switching is temporarily paused during secure input.");
}

AutomationFailure AutomationFailure::operationFailed()
{
    return make("operation_failed", "The operation could not be completed.");
}

AutomationFailure AutomationFailure::inputMethodNotRunning(const QString &framework)
{
    return make("input_method_unavailable", "The input method framework is not running.")
        .withDetail(QStringLiteral("%1 is not running.").arg(framework));
}

AutomationFailure AutomationFailure::inputMethodNotAnswering(const QString &framework)
{
    return make("input_method_unavailable", "The input method framework is not answering.")
        .withDetail(QStringLiteral("%1 does not answer.").arg(framework));
}

AutomationFailure AutomationFailure::sessionBusUnreachable()
{
    return make("input_method_unavailable", "The input method framework cannot be reached.")
        .withDetail(QStringLiteral("The D-Bus session bus is missing or does not answer."));
}

AutomationFailure AutomationFailure::withDetail(const QString &text) const
{
    AutomationFailure failure = *this;
    failure.detail = text;
    return failure;
}

AutomationFailure AutomationFailure::gnomeExtensionMissing()
{
    return {QStringLiteral("gnome_extension_missing"),
            QStringLiteral("Tolvar's GNOME Shell extension is not running. Run %1, then log out and back in.")
                .arg(SourcesAvailability::gnomeExtensionCommand())};
}

std::optional<AutomationFailure> AutomationFailure::forAvailability(InputSources::Availability availability,
                                                                    const QString &framework)
{
    switch (availability) {
    case InputSources::Availability::available: return std::nullopt;
    case InputSources::Availability::notRunning: return inputMethodNotRunning(framework);
    case InputSources::Availability::notAnswering: return inputMethodNotAnswering(framework);
    case InputSources::Availability::extensionMissing: return gnomeExtensionMissing();
    case InputSources::Availability::sessionBusUnreachable: return sessionBusUnreachable();
    }
    return std::nullopt;
}

AutomationFailure AutomationFailure::encodingFailed()
{
    return make("encoding_failed", "Unable to encode the response.");
}
