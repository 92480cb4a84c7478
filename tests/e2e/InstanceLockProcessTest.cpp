#include "core/InstanceLock.h"
#include "support/ParamName.h"

#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString worker = QStringLiteral(TOLVAR_WORKER);

class InstanceLockProcessTest : public testing::Test
{
protected:
    QString path() const
    {
        return InstanceLock::fileIn(m_home.filePath(QStringLiteral("Library/Application Support/Tolvar")));
    }

    // A separate process that takes the lock; returns what it reported.
    QByteArray startHolder(QProcess &process) const
    {
        process.start(worker, {QStringLiteral("hold-lock"), path()});
        if (!process.waitForReadyRead(30000))
            return process.readAllStandardError();
        return process.readLine().trimmed();
    }

    static int finish(QProcess &process)
    {
        if (!process.waitForFinished(30000)) {
            process.kill();
            process.waitForFinished();
            return -1;
        }
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    QTemporaryDir m_home;
};

TEST_F(InstanceLockProcessTest, NothingIsHeldBeforeTheFirstInstanceAndNothingIsCreated)
{
    const Expected<bool> held = InstanceLock::isHeld(path());
    ASSERT_TRUE(held.ok()) << qPrintable(held.error().description());
    EXPECT_FALSE(held.value());
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(path()).absolutePath()));
}

TEST_F(InstanceLockProcessTest, ASecondHolderIsRefused)
{
    QProcess first;
    ASSERT_EQ(startHolder(first), "held");

    QProcess second;
    EXPECT_EQ(startHolder(second), "busy");
    EXPECT_EQ(finish(second), 1);
    InstanceLock here;
    EXPECT_FALSE(here.acquire(path()).value());
    EXPECT_TRUE(InstanceLock::isHeld(path()).value());

    first.closeWriteChannel();
    EXPECT_EQ(finish(first), 0);
}

struct EndingCase
{
    const char *name;
    bool killed;
};

class InstanceLockEndingTest : public InstanceLockProcessTest, public testing::WithParamInterface<EndingCase>
{
};

// However the holder ends, the kernel frees the lock with it.
TEST_P(InstanceLockEndingTest, FreesTheLock)
{
    QProcess holder;
    ASSERT_EQ(startHolder(holder), "held");
    ASSERT_TRUE(InstanceLock::isHeld(path()).value());

    if (GetParam().killed)
        holder.kill();
    else
        holder.closeWriteChannel();
    finish(holder);

    EXPECT_FALSE(InstanceLock::isHeld(path()).value());
    InstanceLock next;
    EXPECT_TRUE(next.acquire(path()).value());
}

INSTANTIATE_TEST_SUITE_P(, InstanceLockEndingTest,
                         testing::Values(EndingCase{"HolderQuits", false}, EndingCase{"HolderIsKilled", true}),
                         ParamName());

} // namespace
