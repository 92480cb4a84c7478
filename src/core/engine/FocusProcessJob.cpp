#include "core/engine/FocusProcessJob.h"

#include "platform/ExecutableLocation.h"

namespace {

constexpr std::chrono::milliseconds killDelay{300};
// Starting means fork and exec; a child that is not running by then never will be.
constexpr int startLimitMs = 5000;

} // namespace

FocusProcessJob::FocusProcessJob(std::chrono::milliseconds timeLimit, Completion completion, QObject *parent)
    : QObject(parent)
    , m_completion(std::move(completion))
    , m_timeLimit(timeLimit)
{
    m_deadline.setSingleShot(true);
    connect(&m_deadline, &QTimer::timeout, this, [this] { stop(FocusProcessResult::timedOut()); });
}

Expected<void> FocusProcessJob::start(const QString &identifier, bool automatic)
{
    QStringList arguments = {QStringLiteral("focus"), identifier};
    if (automatic)
        arguments << QStringLiteral("--automatic");
    return start(ExecutableLocation::path(), arguments);
}

Expected<void> FocusProcessJob::start(const QString &executable, const QStringList &arguments)
{
    m_process.setProgram(executable);
    m_process.setArguments(arguments);
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.setStandardErrorFile(QProcess::nullDevice());
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_process.start();
    if (!m_process.waitForStarted(startLimitMs)) {
        const QString reason = m_process.errorString();
        m_process.kill();
        m_process.waitForFinished(startLimitMs);
        return Error::other(reason);
    }
    connect(&m_process, &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus exitStatus) {
        // A child ended by a signal has no exit status of its own.
        finish(exitStatus == QProcess::NormalExit ? exitCode : -1);
    });
    m_deadline.start(m_timeLimit);
    return {};
}

void FocusProcessJob::stop(FocusProcessResult reason)
{
    if (!m_completion || m_stopReason)
        return;
    m_stopReason = reason;
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    QTimer::singleShot(killDelay, this, [this] {
        if (m_process.state() != QProcess::NotRunning)
            m_process.kill();
    });
}

void FocusProcessJob::finish(int status)
{
    m_deadline.stop();
    Completion completion = std::exchange(m_completion, nullptr);
    if (!completion)
        return;
    completion(m_stopReason.value_or(FocusProcessResult::exited(status)));
    deleteLater();
}
