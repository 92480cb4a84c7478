#pragma once

#include <QString>

// Tolvar's GNOME Shell extension (gnome-extension/), by the name GNOME knows
// it. The build reads the name from here for the extension's metadata.
namespace GnomeShellExtension {

inline const QString uuid = QStringLiteral("input-sources@tolvar.app");

} // namespace GnomeShellExtension
