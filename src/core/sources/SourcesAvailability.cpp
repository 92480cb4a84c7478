#include "core/sources/SourcesAvailability.h"

#include "platform/input/GnomeShellExtension.h"

#include <QHash>

namespace SourcesAvailability {

QString gnomeExtensionCommand()
{
    return QStringLiteral("gnome-extensions enable ") + GnomeShellExtension::uuid;
}

QString frameworkName(const QString &backend)
{
    static const QHash<QString, QString> names = {
        {QStringLiteral("ibus"), QStringLiteral("IBus")},
        {QStringLiteral("gnome"), QStringLiteral("GNOME Shell")},
        {QStringLiteral("fcitx5"), QStringLiteral("Fcitx 5")},
        {QStringLiteral("plasma"), QStringLiteral("KDE Plasma")},
        {QStringLiteral("x11"), QStringLiteral("X11")},
        {QStringLiteral("macos"), QStringLiteral("Text Input Sources")},
    };
    return names.value(backend, backend);
}

std::optional<LocalizedText> reason(InputSources::Availability availability, const QString &framework)
{
    switch (availability) {
    case InputSources::Availability::available: return std::nullopt;
    case InputSources::Availability::notRunning: return LocalizedText("cli.err.im-absent", {framework});
    case InputSources::Availability::notAnswering: return LocalizedText("cli.err.im-silent", {framework});
    case InputSources::Availability::extensionOff:
        return LocalizedText("warn.gnome-extension", {gnomeExtensionCommand()});
    case InputSources::Availability::extensionMissing: return LocalizedText("warn.gnome-extension-missing");
    case InputSources::Availability::extensionOutdated: return LocalizedText("warn.gnome-extension-outdated");
    case InputSources::Availability::extensionFailed: return LocalizedText("warn.gnome-extension-failed");
    case InputSources::Availability::extensionPending: return LocalizedText("warn.gnome-extension-pending");
    case InputSources::Availability::sessionBusUnreachable: return LocalizedText("cli.err.session-bus");
    case InputSources::Availability::noKeyboard: return LocalizedText("cli.err.no-keyboard", {framework});
    }
    return std::nullopt;
}

std::optional<QString> warning(InputSources::Availability availability, const QString &framework)
{
    if (const std::optional<LocalizedText> why = reason(availability, framework))
        return why->text();
    return std::nullopt;
}

std::optional<QString> backendNote(const QString &backend)
{
    // Chosen only for a Plasma X11 session without Plasma's keyboard service.
    if (backend == QLatin1String("x11"))
        return LocalizedText("cli.msg.x11-layout").text();
    return std::nullopt;
}

} // namespace SourcesAvailability
