#pragma once

#include <QString>
#include <QStringList>

namespace ParentProcess {

// The parent's executable path, or empty when it cannot be read.
QString executablePath();
// Executable names of the programs that start desktop applications here.
QStringList desktopLaunchers();
// Ends this process as soon as its parent dies, even while it is stopped, or at
// once if the parent is already gone. For helpers that only make sense to it.
void endWithParent();

} // namespace ParentProcess
