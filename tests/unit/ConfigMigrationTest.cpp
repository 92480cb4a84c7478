#include "core/config/ConfigMigration.h"
#include "core/config/ConfigStore.h"

#include "support/ParamName.h"
#include "support/Process.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

using Outcome = ConfigMigration::Outcome;

const QByteArray oldBytes = "{\n    \"enabled\": true,\n    \"onboardingCompleted\": true\n}\n";
const QByteArray newBytes = "{\n    \"enabled\": false,\n    \"onboardingCompleted\": true\n}\n";

// A file's age in seconds before now; none: no file. -1 for the old file: a folder, which cannot be read.
struct MigrationCase
{
    const char *name;
    int oldAge;
    std::optional<int> newAge;
    bool removeFailsFirst; // the first run is cut short after its copy
    std::optional<Outcome> outcome;
    QByteArray kept;
    bool oldLeft;
};

class ConfigMigrationTest : public testing::TestWithParam<MigrationCase>
{
protected:
    static void place(const QString &path, const QByteArray &bytes, int age)
    {
        ASSERT_TRUE(writeFile(path, bytes));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(-age), QFileDevice::FileModificationTime);
    }

    QTemporaryDir m_home;
    QString m_from = m_home.filePath("old");
    QString m_to = m_home.filePath("new");
};

TEST_P(ConfigMigrationTest, MovesOnceAndKeepsTheNewer)
{
    const MigrationCase &c = GetParam();
    const QString oldFile = ConfigStore::fileIn(m_from);
    if (c.oldAge < 0)
        ASSERT_TRUE(QDir().mkpath(oldFile));
    else
        place(oldFile, oldBytes, c.oldAge);
    if (c.newAge)
        place(ConfigStore::fileIn(m_to), newBytes, *c.newAge);

    if (c.removeFailsFirst) {
        FileOperations files = FileOperations::live();
        files.remove = [](const QString &path) -> Expected<void> { return Error::posix(EIO, path); };
        EXPECT_FALSE(ConfigMigration::run(m_from, m_to, files));
    }
    const Expected<Outcome> result = ConfigMigration::run(m_from, m_to);
    if (c.outcome) {
        ASSERT_TRUE(result) << qPrintable(result.error().description());
        EXPECT_EQ(result.value(), *c.outcome);
    } else {
        EXPECT_FALSE(result) << "an unreadable old file is reported";
    }
    EXPECT_EQ(readFile(ConfigStore::fileIn(m_to)), c.kept);
    EXPECT_EQ(QFileInfo::exists(oldFile), c.oldLeft);
    if (c.outcome) {
        EXPECT_EQ(ConfigMigration::run(m_from, m_to).value(), Outcome::NothingToMove) << "only once";
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(ConfigMigration, ConfigMigrationTest, testing::Values(
    MigrationCase{"OldOnly", 100, std::nullopt, false, Outcome::Moved, oldBytes, false},
    MigrationCase{"OldIsNewer", 10, 100, false, Outcome::Moved, oldBytes, false},
    MigrationCase{"NewIsNewer", 100, 10, false, Outcome::KeptNewer, newBytes, false},
    MigrationCase{"UnreadableOld", -1, std::nullopt, false, std::nullopt, {}, true},
    MigrationCase{"InterruptedMoveFinished", 100, std::nullopt, true, Outcome::KeptNewer, oldBytes, false}),
    ParamName());
// clang-format on

} // namespace
