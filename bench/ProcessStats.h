#pragma once

#include <QtGlobal>

#include <optional>

// What Linux's /proc tells about one running process, for benchmarks that
// watch another program from outside.
namespace ProcessStats {

struct Cpu
{
    // utime + stime of all its threads, in clock ticks turned into milliseconds.
    double ownMs = 0;
    // The same for its children that it has waited for.
    double childrenMs = 0;
    // Time on a CPU of its live threads, in nanoseconds turned into milliseconds:
    // finer than ticks, but blind to threads that have already ended.
    double scheduledMs = 0;
};

struct Memory
{
    qint64 residentKiB = 0; // VmRSS
    qint64 peakKiB = 0;     // VmHWM
};

std::optional<Cpu> cpu(qint64 pid);
std::optional<Memory> memory(qint64 pid);
// How long one clock tick is, the resolution of Cpu::ownMs.
double tickMs();
// The three load averages, as /proc/loadavg gives them.
QByteArray loadAverage();

} // namespace ProcessStats
