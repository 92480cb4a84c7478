#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// Where the program stands in a macOS application bundle
// (Tolvar.app/Contents/MacOS/<executable>), decided from its path alone, so it
// is built and tested everywhere. Paths are expected with their links resolved.
namespace AppBundle {

// The ".app" folder three levels above the executable, or absent when there is none.
std::optional<QString> containing(const QString &executable);

// Inside a bundle: its Contents/Resources; otherwise <prefix>/share/tolvar
// beside <prefix>/bin, as in the build tree and an installation.
QString resourceDirectory(const QString &executable);

inline const QString openProgram = QStringLiteral("/usr/bin/open");
// The arguments of openProgram that start the bundle holding the executable,
// through the system as a launch from the Finder would, with its window open;
// absent when the executable is not inside a bundle.
std::optional<QStringList> openArguments(const QString &executable);

} // namespace AppBundle
