#include "ProcessStats.h"

#include <QDir>
#include <QFile>
#include <QList>

#include <unistd.h>

namespace ProcessStats {
namespace {

QByteArray readProc(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

QString procPath(qint64 pid, const QString &name)
{
    return QStringLiteral("/proc/%1/%2").arg(pid).arg(name);
}

// A "Name:   value kB" line of /proc/<pid>/status.
std::optional<qint64> statusKiB(const QByteArray &status, const QByteArray &name)
{
    for (const QByteArray &line : status.split('\n')) {
        if (!line.startsWith(name + ':'))
            continue;
        bool ok = false;
        const qint64 value = line.mid(name.size() + 1).trimmed().split(' ').value(0).toLongLong(&ok);
        return ok ? std::optional(value) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace

std::optional<Cpu> cpu(qint64 pid)
{
    const QByteArray stat = readProc(procPath(pid, QStringLiteral("stat")));
    // The command name may hold spaces and parentheses; the fields follow the last ')'.
    const qsizetype nameEnd = stat.lastIndexOf(')');
    if (nameEnd < 0)
        return std::nullopt;
    const QList<QByteArray> fields = stat.mid(nameEnd + 2).split(' ');
    // Field 3 (state) comes first: utime is field 14, stime 15, cutime 16, cstime 17.
    if (fields.size() < 15)
        return std::nullopt;
    const auto ticks = [&](int field) { return fields[field - 3].toDouble(); };
    Cpu result;
    result.ownMs = (ticks(14) + ticks(15)) * tickMs();
    result.childrenMs = (ticks(16) + ticks(17)) * tickMs();

    const QDir tasks(procPath(pid, QStringLiteral("task")));
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QByteArray schedstat = readProc(tasks.filePath(task) + QStringLiteral("/schedstat"));
        result.scheduledMs += schedstat.split(' ').value(0).toDouble() / 1e6;
    }
    return result;
}

std::optional<Memory> memory(qint64 pid)
{
    const QByteArray status = readProc(procPath(pid, QStringLiteral("status")));
    const std::optional<qint64> resident = statusKiB(status, "VmRSS");
    const std::optional<qint64> peak = statusKiB(status, "VmHWM");
    if (!resident || !peak)
        return std::nullopt;
    return Memory{*resident, *peak};
}

double tickMs()
{
    return 1000.0 / static_cast<double>(sysconf(_SC_CLK_TCK));
}

QByteArray loadAverage()
{
    return readProc(QStringLiteral("/proc/loadavg")).split(' ').mid(0, 3).join(' ');
}

} // namespace ProcessStats
