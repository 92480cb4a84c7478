#pragma once

#include <QString>

namespace AppLauncher {

enum class Result { Opened, NotAppBundle, Failed };

// Starts the windowed instance of the program at `executable` with "gui",
// independent of the caller.
Result openWindowedInstance(const QString &executable);

} // namespace AppLauncher
