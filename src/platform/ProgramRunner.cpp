#include "platform/ProgramRunner.h"

#include <QProcess>

namespace ProgramRunner {

LaunchctlResult run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments, QIODevice::ReadOnly);
    if (!process.waitForStarted(-1))
        return {1, {}};
    process.waitForFinished(-1);

    LaunchctlResult result;
    result.output = QString::fromUtf8(process.readAllStandardOutput());
    result.status = process.exitCode();
    if (process.exitStatus() == QProcess::CrashExit && result.status == 0)
        result.status = 1;
    return result;
}

} // namespace ProgramRunner
