#include "core/sources/SourcesAvailability.h"

#include "core/config/L10n.h"
#include "platform/GnomeShellExtension.h"

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
        {QStringLiteral("macos"), QStringLiteral("Text Input Sources")},
    };
    return names.value(backend, backend);
}

std::optional<QString> warning(InputSources::Availability availability, const QString &framework)
{
    switch (availability) {
    case InputSources::Availability::available: return std::nullopt;
    case InputSources::Availability::notRunning: return L10n::text("cli.err.im-absent").arg(framework);
    case InputSources::Availability::notAnswering: return L10n::text("cli.err.im-silent").arg(framework);
    case InputSources::Availability::extensionMissing:
        return L10n::text("warn.gnome-extension").arg(gnomeExtensionCommand());
    case InputSources::Availability::sessionBusUnreachable: return L10n::text("cli.err.session-bus");
    }
    return std::nullopt;
}

} // namespace SourcesAvailability
