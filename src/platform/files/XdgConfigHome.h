#pragma once

#include <QString>

// Where the user's settings live on Linux, by the XDG base directory rules.
namespace XdgConfigHome {

// An absolute $XDG_CONFIG_HOME, otherwise home + ".config".
QString of(const QString &homeDirectory, const QString &xdgConfigHome);

} // namespace XdgConfigHome
