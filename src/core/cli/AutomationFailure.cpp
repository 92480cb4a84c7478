#include "core/cli/AutomationFailure.h"

#include "core/l10n/L10n.h"
#include "core/sources/SourcesAvailability.h"

#include <array>

namespace {

using Kind = AutomationFailure::Kind;
using Availability = InputSources::Availability;

// Every failure once: its wire code and sentence, which scripts rely on and must
// not change, and the people's words. With a detail, `detailKey` takes it as %1.
struct Row
{
    Kind kind;
    const char *code;
    const char *message;
    const char *key;
    const char *detailKey = nullptr;
    std::optional<Availability> availability = std::nullopt;
};

// clang-format off
constexpr std::array<Row, 28> rows{{
    {Kind::InvalidArguments, "invalid_arguments", "Invalid command or arguments. Run tolvar help for usage.",
     "cli.usage.header"},
    {Kind::InvalidConfig, "invalid_config", "Unable to read the configuration. The file has not been changed.",
     "warn.config", "cli.err.config"},
    {Kind::RuntimeUnavailable, "runtime_unavailable", "Unable to inspect the running application.",
     "cli.err.runtime", "cli.err.runtime-detail"},
    {Kind::ConfigWriteFailed, "config_write_failed", "Unable to update the configuration.",
     "cli.err.operation", "cli.err.write"},
    {Kind::NoTarget, "no_target", "No input source is selected. Use tolvar set <source-id> first.", "cli.err.no-pin"},
    {Kind::MissingSource, "missing_source",
     "The selected input source is not available. Run tolvar list and select an available source.", "warn.missing"},
    {Kind::MissingSourceAfterSwitch, "missing_source", "The selected input source is not available.", "warn.missing"},
    {Kind::NotAppBundle, "not_app_bundle", "This command must run from the packaged Tolvar application.",
     "cli.err.not-app"},
    {Kind::OpenFailed, "open_failed", "Unable to open Tolvar.", "cli.err.operation", "cli.err.open"},
    {Kind::InstallFailed, "install_failed", "Unable to install the login item.", "cli.err.operation", "warn.login"},
    {Kind::UninstallFailed, "uninstall_failed", "Unable to remove the login item.", "cli.err.operation",
     "warn.login"},
    {Kind::SwitchFailed, "switch_failed", "The input source could not be switched.", "cli.err.operation",
     "warn.switch"},
    {Kind::SwitchEndedWithoutResult, "switch_failed", "The switching operation ended without a result.",
     "cli.err.no-result"},
    {Kind::Busy, "busy", "Another switching operation is in progress.", "warn.busy"},
    {Kind::SecureInput, "secure_input", "Switching is temporarily paused during secure input.", "enf.secure"},
    {Kind::KeymapHeld, "keymap_held",
     "A remote desktop session holds the keyboard layout. Switching waits until it releases it.", "enf.keymap-held"},
    {Kind::OperationFailed, "operation_failed", "The operation could not be completed.", "cli.err.operation"},
    {Kind::EncodingFailed, "encoding_failed", "Unable to encode the response.", "cli.err.operation"},
    {Kind::InputMethodNotRunning, "input_method_unavailable", "The input method framework is not running.",
     nullptr, nullptr, Availability::notRunning},
    {Kind::InputMethodNotAnswering, "input_method_unavailable", "The input method framework is not answering.",
     nullptr, nullptr, Availability::notAnswering},
    {Kind::SessionBusUnreachable, "input_method_unavailable", "The input method framework cannot be reached.",
     nullptr, nullptr, Availability::sessionBusUnreachable},
    {Kind::NoKeyboard, "input_method_unavailable", "The input method framework reports no keyboard layout.",
     nullptr, nullptr, Availability::noKeyboard},
    // One code for every reason the extension does not run, as scripts already know it.
    {Kind::GnomeExtensionOff, "gnome_extension_missing", nullptr, nullptr, nullptr, Availability::extensionOff},
    {Kind::GnomeExtensionMissing, "gnome_extension_missing",
     "Tolvar's GNOME Shell extension is not installed. Install Tolvar again, then log out and back in.", nullptr,
     nullptr, Availability::extensionMissing},
    {Kind::GnomeExtensionOutdated, "gnome_extension_missing",
     "Tolvar's GNOME Shell extension does not support this version of GNOME Shell. Install a newer Tolvar.", nullptr,
     nullptr, Availability::extensionOutdated},
    {Kind::GnomeExtensionFailed, "gnome_extension_missing",
     "Tolvar's GNOME Shell extension failed to start. Log out and back in.", nullptr, nullptr,
     Availability::extensionFailed},
    {Kind::GnomeExtensionPending, "gnome_extension_missing",
     "Tolvar's GNOME Shell extension starts at the next login. Log out and back in.", nullptr, nullptr,
     Availability::extensionPending},
    {Kind::ChecksFailed, "checks_failed", "At least one check failed.", "doctor.failed"},
}};
// clang-format on

const Row &rowFor(Kind kind)
{
    for (const Row &row : rows) {
        if (row.kind == kind)
            return row;
    }
    return rowFor(Kind::OperationFailed);
}

QString messageOf(const Row &row)
{
    if (row.kind == Kind::GnomeExtensionOff)
        return QStringLiteral("Tolvar's GNOME Shell extension is not running. Run %1, then log out and back in.")
            .arg(SourcesAvailability::gnomeExtensionCommand());
    return QString::fromLatin1(row.message);
}

} // namespace

AutomationFailure AutomationFailure::of(Kind kind)
{
    const Row &row = rowFor(kind);
    return {kind, QString::fromLatin1(row.code), messageOf(row)};
}

std::optional<AutomationFailure> AutomationFailure::forAvailability(Availability availability, const QString &framework)
{
    for (const Row &row : rows) {
        if (row.availability == availability) {
            const AutomationFailure failure = of(row.kind);
            switch (availability) {
            case Availability::notRunning:
                return failure.withDetail(QStringLiteral("%1 is not running.").arg(framework));
            case Availability::notAnswering:
                return failure.withDetail(QStringLiteral("%1 does not answer.").arg(framework));
            case Availability::sessionBusUnreachable:
                return failure.withDetail(QStringLiteral("The D-Bus session bus is missing or does not answer."));
            case Availability::noKeyboard:
                return failure.withDetail(QStringLiteral("%1 has no keyboard layout.").arg(framework));
            default: return failure;
            }
        }
    }
    return std::nullopt;
}

QString AutomationFailure::humanText(const QString &framework) const
{
    const Row &row = rowFor(kind);
    if (row.availability)
        return SourcesAvailability::warning(*row.availability, framework).value_or(message);
    if (row.detailKey && !detail.isEmpty())
        return L10n::text(row.detailKey).arg(shownDetail.isEmpty() ? detail : shownDetail);
    return L10n::text(row.key);
}

AutomationFailure AutomationFailure::withDetail(const QString &text) const
{
    AutomationFailure failure = *this;
    failure.detail = text;
    return failure;
}

AutomationFailure AutomationFailure::withDetail(const Error &error) const
{
    AutomationFailure failure = withDetail(error.description());
    failure.shownDetail = L10n::describe(error);
    return failure;
}
