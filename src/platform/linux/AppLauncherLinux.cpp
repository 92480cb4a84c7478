#include "platform/AppLauncher.h"

#include <QProcess>
#include <QStringList>

namespace AppLauncher {

// No application bundle here: the executable itself is the application, started
// detached so it outlives the command that opened it. It must not keep the
// command's output open either, or `$(tolvar open)` would wait for it forever.
Result openWindowedInstance(const QString &executable)
{
    QProcess process;
    process.setProgram(executable);
    process.setArguments({QStringLiteral("gui")});
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    return process.startDetached() ? Result::Opened : Result::Failed;
}

} // namespace AppLauncher
