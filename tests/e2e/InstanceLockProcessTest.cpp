#include "core/instance/InstanceLock.h"
#include "support/ParamName.h"
#include "support/Process.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

class InstanceLockProcessTest : public testing::Test
{
protected:
    QString path() const { return InstanceLock::fileIn(m_home.filePath(QStringLiteral("Tolvar"))); }

    // Another process takes the lock and keeps it until its input closes; returns what it reported.
    QByteArray startHolder(QProcess &holder) const
    {
        holder.start(QStringLiteral(TOLVAR_WORKER), {QStringLiteral("hold-lock"), path()});
        return holder.waitForReadyRead(30000) ? holder.readLine().trimmed() : holder.readAllStandardError();
    }

    QTemporaryDir m_home;
};

TEST_F(InstanceLockProcessTest, NothingIsHeldAtFirstAndASecondHolderIsRefused)
{
    ASSERT_FALSE(InstanceLock::isHeld(path()).value());
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(path()).absolutePath())) << "asking creates nothing";
    QProcess first;
    ASSERT_EQ(startHolder(first), "held");
    const QFileInfo file(path());
    QFile text(path());
    ASSERT_TRUE(text.open(QIODevice::ReadOnly));
    EXPECT_EQ(InstanceOwner::parse(text.readAll()).value_or(InstanceOwner{}).pid, first.processId())
        << "the holder names itself";
    EXPECT_EQ(file.permissions() & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
              QFile::ReadOwner | QFile::WriteOwner);

    QProcess second;
    EXPECT_EQ(startHolder(second), "busy");
    InstanceLock here;
    EXPECT_FALSE(here.acquire(path()).value());
    EXPECT_TRUE(InstanceLock::isHeld(path()).value());
}

// However the holder ends, quitting or killed, the kernel frees the lock with it.
TEST_F(InstanceLockProcessTest, AnEndingHolderFreesTheLock)
{
    for (const bool killed : {false, true}) {
        SCOPED_TRACE(killed ? "killed" : "quits");
        QProcess holder;
        ASSERT_EQ(startHolder(holder), "held");
        ASSERT_TRUE(InstanceLock::isHeld(path()).value());
        if (killed)
            holder.kill();
        else
            holder.closeWriteChannel();
        ASSERT_TRUE(holder.waitForFinished(30000));

        EXPECT_FALSE(InstanceLock::isHeld(path()).value());
        InstanceLock next;
        EXPECT_TRUE(next.acquire(path()).value());
    }
}

struct OccupiedCase
{
    const char *name;
    QStringList make; // a command that puts something at the path, given last
    int error;
};

class InstanceLockOccupiedTest : public InstanceLockProcessTest, public testing::WithParamInterface<OccupiedCase>
{
};

// Something other than a plain file at the path is an error, never a verdict,
// whether taking the lock or asking who holds it.
TEST_P(InstanceLockOccupiedTest, IsAnError)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path()).absolutePath()));
    ASSERT_EQ(runProcess(GetParam().make.first(), GetParam().make.mid(1) << path()).exitCode, 0);
    InstanceLock lock;
    for (const Expected<bool> &answer : {lock.acquire(path()), InstanceLock::isHeld(path())}) {
        ASSERT_FALSE(answer.ok());
        EXPECT_EQ(answer.error().code(), GetParam().error);
        EXPECT_EQ(answer.error().path(), path());
    }
}

INSTANTIATE_TEST_SUITE_P(, InstanceLockOccupiedTest,
                         testing::Values(OccupiedCase{"Folder", {"mkdir"}, EISDIR},
                                         // Following it would create the target.
                                         OccupiedCase{"DanglingLink", {"ln", "-s", "missing-target"}, ELOOP},
                                         // Neither may wait for a writer to open the pipe, nor lock it.
                                         OccupiedCase{"Fifo", {"mkfifo"}, EINVAL}),
                         ParamName());

} // namespace
