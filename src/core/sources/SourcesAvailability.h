#pragma once

#include "core/l10n/LocalizedText.h"
#include "platform/input/InputSources.h"

#include <QString>

#include <optional>

// What the user is told when the input sources are out of reach.
namespace SourcesAvailability {

// The command that turns Tolvar's GNOME Shell extension on.
QString gnomeExtensionCommand();
// The framework's own spelling for a backend name, for messages ("IBus").
QString frameworkName(const QString &backend);
// What keeps the sources out of reach, with what to do; none when they can be reached.
std::optional<LocalizedText> reason(InputSources::Availability availability, const QString &framework);
// The same, in the active language.
std::optional<QString> warning(InputSources::Availability availability, const QString &framework);
// What the user should know of the backend itself, in the active language; none for most.
std::optional<QString> backendNote(const QString &backend);

} // namespace SourcesAvailability
