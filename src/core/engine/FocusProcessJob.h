#pragma once

#include "base/Expected.h"
#include "core/engine/FocusProcessResult.h"

#include <QObject>
#include <QProcess>
#include <QTimer>

#include <chrono>
#include <functional>
#include <optional>

// One run of the focus helper child process, seen from the parent: started,
// time-limited, stoppable, and reported exactly once on the owner's thread.
// The job deletes itself after reporting.
class FocusProcessJob : public QObject
{
public:
    using Completion = std::function<void(FocusProcessResult)>;

    FocusProcessJob(std::chrono::milliseconds timeLimit, Completion completion, QObject *parent = nullptr);

    // Runs this executable as "focus <identifier> [--automatic]".
    Expected<void> start(const QString &identifier, bool automatic);
    Expected<void> start(const QString &executable, const QStringList &arguments);

    // Terminates the child (killed 300 ms later if still there); the first reason wins.
    void stop(FocusProcessResult reason);

    qint64 processId() const { return m_process.processId(); }

private:
    void finish(int status);

    QProcess m_process;
    QTimer m_deadline;
    Completion m_completion;
    std::optional<FocusProcessResult> m_stopReason;
    std::chrono::milliseconds m_timeLimit;
};
