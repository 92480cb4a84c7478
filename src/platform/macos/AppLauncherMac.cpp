#include "platform/AppLauncher.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace AppLauncher {

Result openWindowedInstance(const QString &executable)
{
    // Tolvar.app/Contents/MacOS/tolvar, with the command link resolved.
    QDir bundle = QFileInfo(QFileInfo(executable).canonicalFilePath()).absoluteDir();
    bundle.cdUp();
    bundle.cdUp();
    if (!bundle.absolutePath().endsWith(QLatin1String(".app")))
        return Result::NotAppBundle;
    QProcess open;
    open.start(QStringLiteral("/usr/bin/open"),
               {QStringLiteral("-a"), bundle.absolutePath(), QStringLiteral("--args"), QStringLiteral("gui")});
    if (!open.waitForFinished(-1) || open.exitStatus() != QProcess::NormalExit || open.exitCode() != 0)
        return Result::Failed;
    return Result::Opened;
}

} // namespace AppLauncher
