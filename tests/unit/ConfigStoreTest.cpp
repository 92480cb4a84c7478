#include "core/config/ConfigStore.h"
#include "core/config/ConfigMigration.h"
#include "core/config/ConfigSnapshot.h"
#include "support/FakeNotifications.h"
#include "support/Process.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

class ConfigStoreTest : public testing::Test
{
protected:
    QString directory() const { return m_home.filePath(QStringLiteral(".config/tolvar")); }
    QString file() const { return ConfigStore::fileIn(directory()); }

    void writeRaw(const QByteArray &bytes) const { ASSERT_TRUE(writeFile(file(), bytes)); }

    static ConfigStore::Edit pin(const QString &id)
    {
        return [id](Config &config) -> Expected<void> {
            config.sourceID = id;
            return {};
        };
    }

    QTemporaryDir m_home;
    FakeNotifications m_notifications;
};

TEST_F(ConfigStoreTest, FirstWriteCreatesDirectoryLockAndFile)
{
    const Expected<Config> written =
        ConfigStore::mutate(directory(), pin(QStringLiteral("xkb:de::ger")), m_notifications.record());
    ASSERT_TRUE(written.ok()) << qPrintable(written.error().description());
    EXPECT_EQ(written->sourceID, QStringLiteral("xkb:de::ger"));

    const QFileInfo lock(ConfigStore::lockFileIn(directory()));
    ASSERT_TRUE(lock.isFile());
    EXPECT_EQ(lock.size(), 0);
    EXPECT_EQ(lock.permissions() & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
              QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_EQ(ConfigStore::loadFrom(directory()).value(), written.value());
    EXPECT_EQ(*m_notifications.posted, QStringList{ConfigStore::changed});

    // The same edit again changes nothing, so nobody is told.
    ASSERT_TRUE(ConfigStore::mutate(directory(), pin(QStringLiteral("xkb:de::ger")), m_notifications.record()).ok());
    EXPECT_EQ(*m_notifications.posted, QStringList{ConfigStore::changed});
}

TEST_F(ConfigStoreTest, MissingFileLoadsDefaultsAndABadOneIsForgivenOnlyOnRequest)
{
    EXPECT_EQ(ConfigStore::loadFrom(directory()).value(), Config{});
    EXPECT_FALSE(QFileInfo::exists(directory())) << "reading must not create anything";
    writeRaw(R"({"sourceID":"xkb:us::eng"})");
    EXPECT_FALSE(ConfigStore::loadFrom(directory()).ok());
    EXPECT_EQ(ConfigStore::loadOrDefault(directory()), Config{});
}

// An undecodable file or a failing edit: the bytes stay, and nobody is told.
TEST_F(ConfigStoreTest, RefusedEditsWriteAndPostNothing)
{
    using Row = std::pair<QByteArray, bool>; // the file; whether the edit fails
    for (const auto &[bytes, editFails] : {Row{R"({"sourceID":"xkb:us::eng"})", false}, Row{"enabled = yes", false},
                                           Row{R"({"enabled":true,"onboardingCompleted":true})", true}}) {
        writeRaw(bytes);
        bool editRan = false;
        const ConfigStore::Edit edit = [&](Config &config) -> Expected<void> {
            editRan = true;
            config.enabled = !config.enabled;
            return editFails ? Expected<void>(Error::other("refused")) : Expected<void>();
        };
        EXPECT_FALSE(ConfigStore::mutate(directory(), edit, m_notifications.record()).ok()) << bytes.constData();
        EXPECT_EQ(editRan, editFails) << "the edit must not see an undecodable record";
        EXPECT_EQ(readFile(file()), bytes);
    }
    EXPECT_TRUE(m_notifications.posted->isEmpty());
}

// A symbolic link where the lock belongs could redirect writes anywhere.
TEST_F(ConfigStoreTest, SymbolicLinkLockRefusesEveryWrite)
{
    QDir().mkpath(directory());
    const QString target = m_home.filePath(QStringLiteral("elsewhere"));
    const QString lockPath = ConfigStore::lockFileIn(directory());
    ASSERT_TRUE(QFile::link(target, lockPath));

    const Expected<void> written = ConfigStore::write(Config{}, directory());
    const Expected<Config> mutated =
        ConfigStore::mutate(directory(), pin(QStringLiteral("x")), m_notifications.record());
    for (const Error &error : {written.error(), mutated.error()}) {
        EXPECT_EQ(error.domain(), Error::Domain::Posix);
        EXPECT_EQ(error.code(), ELOOP);
        EXPECT_EQ(error.path(), lockPath);
    }
    EXPECT_FALSE(QFileInfo::exists(file()));
    EXPECT_FALSE(QFileInfo::exists(target));
    EXPECT_TRUE(m_notifications.posted->isEmpty());
}

TEST(ConfigTest, WritesWhatItReadsBackAndLeavesUnsetMembersOut)
{
    const std::pair<Config, QStringList> rows[] = {
        {Config{}, {"enabled", "onboardingCompleted"}},
        {Config{.sourceID = "xkb:us::eng", .enabled = true, .language = "ja", .onboardingCompleted = true},
         {"enabled", "language", "onboardingCompleted", "sourceID"}},
        {Config{.sourceID = "a/b\"c\\d\ne\x01\u00e9\u6f22", .enabled = true},
         {"enabled", "onboardingCompleted", "sourceID"}},
        {Config{.sourceID = QString(), .language = QString()},
         {"enabled", "language", "onboardingCompleted", "sourceID"}}};
    for (const auto &[config, members] : rows) {
        EXPECT_EQ(QJsonDocument::fromJson(config.encoded()).object().keys(), members);
        const Expected<Config> decoded = Config::decode(config.encoded());
        ASSERT_TRUE(decoded.ok()) << qPrintable(decoded.error().description());
        EXPECT_EQ(decoded.value(), config);
    }
}

TEST(ConfigTest, DecodesOnlyCompleteWellTypedRecords)
{
    // clang-format off
    const std::pair<const char *, Config> accepted[] = {
        {R"({"enabled":true,"onboardingCompleted":false})", {.enabled = true}},
        {R"({"enabled":false,"onboardingCompleted":true,"sourceID":null,"language":null})", {.onboardingCompleted = true}},
        {R"({"enabled":true,"onboardingCompleted":true,"sourceID":"x","theme":3})", {.sourceID = "x", .enabled = true, .onboardingCompleted = true}},
        {R"({"enabled":true,"onboardingCompleted":true,"sourceID":"a\/b"})", {.sourceID = "a/b", .enabled = true, .onboardingCompleted = true}}};
    // clang-format on
    for (const auto &[json, expected] : accepted) {
        const Expected<Config> decoded = Config::decode(json);
        ASSERT_TRUE(decoded.ok()) << json << qPrintable(decoded.error().description());
        EXPECT_EQ(decoded.value(), expected) << json;
    }
    for (const char *json :
         {R"({"sourceID":"xkb:us::eng"})", R"({"enabled":true})", R"({"enabled":1,"onboardingCompleted":false})",
          R"({"enabled":"true","onboardingCompleted":false})", R"({"enabled":null,"onboardingCompleted":false})",
          R"({"enabled":true,"onboardingCompleted":false,"sourceID":7})",
          R"({"enabled":true,"onboardingCompleted":false,"language":["en"]})",
          R"([{"enabled":true,"onboardingCompleted":false}])", R"({"enabled":true,"onboardingComp)"}) {
        const Expected<Config> decoded = Config::decode(json);
        ASSERT_FALSE(decoded.ok()) << json;
        EXPECT_EQ(decoded.error().domain(), Error::Domain::Decode) << json;
    }
}

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

void stamp(const QString &path, const QByteArray &bytes, const QDateTime &time)
{
    ASSERT_TRUE(writeFile(path, bytes));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(time, QFileDevice::FileModificationTime));
}

// A second look after the file changed under the first: a file nobody touched
// is not read again, but one whose time or size moved, one too young for its
// time to tell, or one we wrote ourselves, is.
TEST(ConfigSnapshotTest, ReadsAgainOnlyWhatMayHaveChanged)
{
    struct Row
    {
        std::optional<int> firstAge; // seconds; none: no file at the first look
        QByteArray second;
        bool sameTime;
        bool forget; // as after a write of our own
        std::optional<QString> seen;
    };
    const QByteArray german = R"({"enabled":true,"onboardingCompleted":true,"sourceID":"xkb:de::deu"})";
    const QByteArray english = R"({"enabled":true,"onboardingCompleted":true,"sourceID":"xkb:us::eng"})";
    const QByteArray hangul = R"({"enabled":true,"onboardingCompleted":true,"sourceID":"hangul"})";
    const QString de = QStringLiteral("xkb:de::deu"), us = QStringLiteral("xkb:us::eng");
    for (const Row &row : {Row{5, english, true, false, de}, Row{5, english, true, true, us},
                           Row{5, hangul, true, false, QStringLiteral("hangul")}, Row{5, english, false, false, us},
                           Row{0, english, true, false, us}, Row{std::nullopt, english, false, false, us}}) {
        SCOPED_TRACE(testing::Message() << row.firstAge.value_or(-1) << " " << row.second.constData() << " "
                                        << row.sameTime);
        QTemporaryDir home;
        const QString file = ConfigStore::fileIn(home.path());
        const QDateTime firstTime = QDateTime::currentDateTimeUtc().addSecs(-row.firstAge.value_or(0));
        if (row.firstAge)
            stamp(file, german, firstTime);
        ConfigSnapshot snapshot(home.path());
        EXPECT_EQ(snapshot.read()->sourceID, row.firstAge ? std::optional(de) : std::nullopt);
        stamp(file, row.second, row.sameTime ? firstTime : QDateTime::currentDateTimeUtc().addSecs(-3));
        if (row.forget)
            snapshot.forget();
        EXPECT_EQ(snapshot.read()->sourceID, row.seen);
    }
}

} // namespace
