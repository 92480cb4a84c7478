#pragma once

#include <QString>
#include <QStringList>

namespace ParentProcess {

// The parent's executable path, or empty when it cannot be read.
QString executablePath();
// Executable names of the programs that start desktop applications here.
QStringList desktopLaunchers();

} // namespace ParentProcess
