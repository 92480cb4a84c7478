#include "platform/login/ProgramRunner.h"

#include <QProcess>

namespace ProgramRunner {
namespace {

constexpr int limitMs = 2000;

} // namespace

ServiceToolResult run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(program, arguments, QIODevice::ReadOnly);
    if (!process.waitForStarted(limitMs))
        return {1, {}};
    // The service manager answers in milliseconds; one that waits on a silent
    // bus is given up on, as a failure.
    if (!process.waitForFinished(limitMs)) {
        process.kill();
        process.waitForFinished(limitMs);
        return {1, {}};
    }

    ServiceToolResult result;
    result.output = QString::fromUtf8(process.readAllStandardOutput());
    result.status = process.exitCode();
    if (process.exitStatus() == QProcess::CrashExit && result.status == 0)
        result.status = 1;
    return result;
}

} // namespace ProgramRunner
