#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

// One finished run of a program, with everything it printed.
struct ProcessResult
{
    int exitCode = -1;
    bool finished = false;
    QByteArray out;
    QByteArray err;
};

inline ProcessResult runProcess(const QString &program, const QStringList &arguments,
                                const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment(),
                                int timeoutMs = 30000)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    ProcessResult result;
    result.finished = process.waitForFinished(timeoutMs);
    if (!result.finished) {
        process.kill();
        process.waitForFinished();
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}
