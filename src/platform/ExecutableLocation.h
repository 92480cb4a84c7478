#pragma once

#include <QString>

namespace ExecutableLocation {

// The real path of the running program, with every symbolic link resolved.
QString path();
// Where the program's resources live for that path (the text tables among them).
QString resourceDirectory(const QString &executablePath);
// The library holding the windowed roles, which the program loads for those only.
QString graphicalLibrary(const QString &executablePath);

} // namespace ExecutableLocation
