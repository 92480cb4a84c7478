#include "platform/AppLauncher.h"
#include "platform/login/AppBundle.h"

#include <QFileInfo>
#include <QProcess>

namespace AppLauncher {

Result openWindowedInstance(const QString &executable)
{
    // Resolved first, so that the command link in ~/.local/bin leads into the bundle.
    const std::optional<QStringList> arguments = AppBundle::openArguments(QFileInfo(executable).canonicalFilePath());
    if (!arguments)
        return Result::NotAppBundle;
    QProcess open;
    open.start(AppBundle::openProgram, *arguments);
    if (!open.waitForFinished(-1) || open.exitStatus() != QProcess::NormalExit || open.exitCode() != 0)
        return Result::Failed;
    return Result::Opened;
}

} // namespace AppLauncher
