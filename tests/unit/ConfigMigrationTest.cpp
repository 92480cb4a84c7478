#include "core/config/ConfigMigration.h"
#include "core/config/ConfigStore.h"

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

void place(const QString &path, const QByteArray &bytes, int age)
{
    ASSERT_TRUE(writeFile(path, bytes));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(-age), QFileDevice::FileModificationTime);
}

// The old file's age in seconds before now (-1: a folder, which cannot be read), the new one's (none: no file), and
// whether a first run is cut short after its copy; then the outcome (none: an error) and the bytes kept.
struct MigrationCase
{
    int oldAge;
    std::optional<int> newAge;
    bool removeFailsFirst;
    std::optional<Outcome> outcome;
    QByteArray kept;
};

TEST(ConfigMigrationTest, MovesOnceAndKeepsTheNewer)
{
    for (const MigrationCase &c : {MigrationCase{100, std::nullopt, false, Outcome::Moved, oldBytes},
                                   MigrationCase{10, 100, false, Outcome::Moved, oldBytes},
                                   MigrationCase{100, 10, false, Outcome::KeptNewer, newBytes},
                                   MigrationCase{-1, std::nullopt, false, std::nullopt, {}},
                                   MigrationCase{100, std::nullopt, true, Outcome::KeptNewer, oldBytes}}) {
        SCOPED_TRACE(testing::Message() << c.oldAge << " " << c.newAge.value_or(-1) << " " << c.removeFailsFirst);
        QTemporaryDir home;
        const QString from = home.filePath("old"), to = home.filePath("new"), oldFile = ConfigStore::fileIn(from);
        if (c.oldAge < 0)
            ASSERT_TRUE(QDir().mkpath(oldFile));
        else
            place(oldFile, oldBytes, c.oldAge);
        if (c.newAge)
            place(ConfigStore::fileIn(to), newBytes, *c.newAge);
        if (c.removeFailsFirst) {
            FileOperations files = FileOperations::live();
            files.remove = [](const QString &path) -> Expected<void> { return Error::posix(EIO, path); };
            EXPECT_FALSE(ConfigMigration::run(from, to, files));
        }
        const Expected<Outcome> result = ConfigMigration::run(from, to);
        EXPECT_EQ(result ? std::optional(result.value()) : std::nullopt, c.outcome);
        EXPECT_EQ(readFile(ConfigStore::fileIn(to)), c.kept);
        EXPECT_EQ(QFileInfo::exists(oldFile), !c.outcome) << "an unreadable old file stays";
        if (c.outcome) {
            EXPECT_EQ(ConfigMigration::run(from, to).value(), Outcome::NothingToMove) << "only once";
        }
    }
}

} // namespace
