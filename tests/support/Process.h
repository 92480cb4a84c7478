#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
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

// A started program that ends with its owner: no instance outlives its test.
struct Instance : QProcess
{
    ~Instance() override
    {
        kill();
        waitForFinished();
    }
};

// The exit status of a started process, or -1 when it crashed or did not finish.
inline int finish(QProcess &process, int timeoutMs = 60000)
{
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished();
        return -1;
    }
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

// Writes `bytes` to `path`, creating its folder.
inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).absolutePath()) && file.open(QIODevice::WriteOnly)
           && file.write(bytes) == bytes.size();
}

// The bytes at `path`; empty when there is no readable file.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
