#include "platform/AppLauncher.h"

#include <QProcess>
#include <QStringList>

namespace AppLauncher {

// No application bundle here: the executable itself is the application, started
// detached so it outlives the command that opened it.
Result openWindowedInstance(const QString &executable)
{
    return QProcess::startDetached(executable, {QStringLiteral("gui")}) ? Result::Opened : Result::Failed;
}

} // namespace AppLauncher
