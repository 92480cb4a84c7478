#include "core/sources/SourcesAvailability.h"

#include "core/config/L10n.h"
#include "platform/GnomeShellExtension.h"

namespace SourcesAvailability {

QString gnomeExtensionCommand()
{
    return QStringLiteral("gnome-extensions enable ") + GnomeShellExtension::uuid;
}

std::optional<QString> warning(InputSources::Availability availability)
{
    switch (availability) {
    case InputSources::Availability::available: return std::nullopt;
    case InputSources::Availability::extensionMissing:
        return L10n::text("warn.gnome-extension").arg(gnomeExtensionCommand());
    }
    return std::nullopt;
}

} // namespace SourcesAvailability
