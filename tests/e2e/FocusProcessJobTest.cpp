#include "core/engine/FocusProcessJob.h"
#include "support/ParamName.h"
#include "support/Spin.h"

#include <QCoreApplication>
#include <QPointer>

#include <gtest/gtest.h>

#include <csignal>
#include <vector>

namespace {

const QString worker = QStringLiteral(TOLVAR_WORKER);
using namespace std::chrono_literals;

bool processGone(qint64 pid)
{
    return pid <= 0 || ::kill(static_cast<pid_t>(pid), 0) != 0;
}

// Starts a stand-in helper under a job and collects what the job reports.
class FocusProcessJobTest : public testing::Test
{
protected:
    void start(const QString &behaviour, int value, std::chrono::milliseconds limit = 3000ms)
    {
        m_job = new FocusProcessJob(limit, [this](FocusProcessResult result) { m_results.push_back(result); });
        const Expected<void> started =
            m_job->start(worker, {QStringLiteral("child"), behaviour, QString::number(value)});
        ASSERT_TRUE(started.ok()) << qPrintable(started.error().description());
        m_pid = m_job->processId();
    }

    void waitForResult(int timeoutMs = 10000)
    {
        spinUntil([this] { return !m_results.empty(); }, timeoutMs);
        // Anything reported twice would come now.
        spinUntil([] { return false; }, 100);
    }

    void TearDown() override
    {
        EXPECT_TRUE(processGone(m_pid)) << "the helper outlived its job";
        if (!processGone(m_pid))
            ::kill(static_cast<pid_t>(m_pid), SIGKILL);
    }

    QPointer<FocusProcessJob> m_job;
    std::vector<FocusProcessResult> m_results;
    qint64 m_pid = 0;
};

// However the helper ends, the job reports the first reason once, then deletes itself.
struct StopCase
{
    const char *name;
    const char *behaviour;
    int value;
    std::chrono::milliseconds limit;
    std::vector<FocusProcessResult> stops;
    FocusProcessResult expected;
};

class FocusProcessStopTest : public FocusProcessJobTest, public testing::WithParamInterface<StopCase>
{
};

TEST_P(FocusProcessStopTest, ReportsTheFirstReasonOnce)
{
    start(QLatin1String(GetParam().behaviour), GetParam().value, GetParam().limit);
    spinUntil([] { return false; }, 200); // let the helper install its handler
    for (const FocusProcessResult &reason : GetParam().stops)
        m_job->stop(reason);
    waitForResult();
    ASSERT_EQ(m_results.size(), 1u);
    EXPECT_EQ(m_results.front(), GetParam().expected);
    EXPECT_TRUE(m_job.isNull());
}

const FocusProcessResult cancelled = FocusProcessResult::cancelled();
const FocusProcessResult timedOut = FocusProcessResult::timedOut();

INSTANTIATE_TEST_SUITE_P(
    FocusProcessJob, FocusProcessStopTest,
    testing::Values(StopCase{"ExitsWithItsStatus", "exit", 78, 3000ms, {}, FocusProcessResult::exited(78)},
                    StopCase{"HangingHelperTimesOut", "sleep", 0, 200ms, {}, timedOut},
                    StopCase{"HelperIgnoringTerminateIsKilled", "ignore-term", 0, 3000ms, {cancelled}, cancelled},
                    StopCase{"FirstStopReasonWins", "sleep", 0, 3000ms, {cancelled, timedOut}, cancelled},
                    // It exits cleanly on SIGTERM, yet the job was the one to stop it.
                    StopCase{"ExitAfterStopKeepsTheReason", "term-exits", 0, 3000ms, {cancelled}, cancelled}),
    ParamName());

TEST(FocusProcessLaunchTest, MissingExecutableIsAnErrorWithoutCompletion)
{
    int completions = 0;
    FocusProcessJob job(3000ms, [&](FocusProcessResult) { ++completions; });
    const Expected<void> started = job.start(QStringLiteral("/nonexistent/tolvar"), {QStringLiteral("focus")});
    EXPECT_FALSE(started.ok());
    spinUntil([] { return false; }, 100);
    EXPECT_EQ(completions, 0);
}

} // namespace
