#include "core/InstanceLock.h"
#include "support/ParamName.h"
#include "support/Process.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

class InstanceLockTest : public testing::Test
{
protected:
    QString path() const { return InstanceLock::fileIn(m_home.filePath(QStringLiteral("Tolvar"))); }

    QTemporaryDir m_home;
};

TEST_F(InstanceLockTest, FirstAcquireCreatesAnEmptyPrivateFile)
{
    InstanceLock lock;
    const Expected<bool> acquired = lock.acquire(path());
    ASSERT_TRUE(acquired.ok()) << qPrintable(acquired.error().description());
    EXPECT_TRUE(acquired.value());

    const QFileInfo file(path());
    ASSERT_TRUE(file.isFile());
    EXPECT_EQ(file.size(), 0);
    const QFile::Permissions user = QFile::ReadUser | QFile::WriteUser | QFile::ExeUser;
    EXPECT_EQ(file.permissions() & ~user, QFile::ReadOwner | QFile::WriteOwner);
}

// Separate opens of the file conflict even inside one process, so a second
// object stands in for a second instance.
TEST_F(InstanceLockTest, DestructionReleasesTheLock)
{
    InstanceLock second;
    {
        InstanceLock first;
        ASSERT_TRUE(first.acquire(path()).value());
        EXPECT_FALSE(second.acquire(path()).value());
        EXPECT_TRUE(InstanceLock::isHeld(path()).value());
    }
    EXPECT_FALSE(InstanceLock::isHeld(path()).value());
    EXPECT_TRUE(second.acquire(path()).value());
}

enum class Occupant { Folder, LinkToFile, DanglingLink, Fifo };

struct OccupiedCase
{
    const char *name;
    Occupant occupant;
    int acquireErrno; // 0: acquire is not tried
    int isHeldErrno;
};

class InstanceLockOccupiedTest : public InstanceLockTest, public testing::WithParamInterface<OccupiedCase>
{
};

// Something other than a plain file at the lock's path is an error, never a
// verdict on whether an instance runs.
TEST_P(InstanceLockOccupiedTest, IsAnError)
{
    QDir().mkpath(QFileInfo(path()).absolutePath());
    const QString target = m_home.filePath(QStringLiteral("target"));
    switch (GetParam().occupant) {
    case Occupant::Folder: ASSERT_TRUE(QDir().mkpath(path())); break;
    case Occupant::LinkToFile:
        QFile(target).open(QIODevice::WriteOnly);
        ASSERT_TRUE(QFile::link(target, path()));
        break;
    case Occupant::DanglingLink: ASSERT_TRUE(QFile::link(target, path())); break;
    case Occupant::Fifo: ASSERT_EQ(runProcess(QStringLiteral("mkfifo"), {path()}).exitCode, 0); break;
    }
    const bool targetExisted = QFileInfo::exists(target);

    if (GetParam().acquireErrno != 0) {
        InstanceLock lock;
        const Expected<bool> acquired = lock.acquire(path());
        ASSERT_FALSE(acquired.ok());
        EXPECT_EQ(acquired.error(), Error::posix(GetParam().acquireErrno, path()));
        EXPECT_FALSE(lock.holds());
    }
    const Expected<bool> held = InstanceLock::isHeld(path());
    ASSERT_FALSE(held.ok());
    EXPECT_EQ(held.error(), Error::posix(GetParam().isHeldErrno, path()));
    EXPECT_EQ(QFileInfo::exists(target), targetExisted) << "a link must never be followed";
}

INSTANTIATE_TEST_SUITE_P(, InstanceLockOccupiedTest,
                         testing::Values(OccupiedCase{"Folder", Occupant::Folder, EISDIR, EINVAL},
                                         OccupiedCase{"LinkToAFile", Occupant::LinkToFile, ELOOP, ELOOP},
                                         OccupiedCase{"DanglingLink", Occupant::DanglingLink, ELOOP, ELOOP},
                                         // The probe must not wait for a writer to open the pipe.
                                         OccupiedCase{"FifoDoesNotHangTheProbe", Occupant::Fifo, 0, EINVAL}),
                         ParamName());

} // namespace
