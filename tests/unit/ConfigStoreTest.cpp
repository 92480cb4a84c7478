#include "core/config/ConfigStore.h"
#include "support/FakeNotifications.h"
#include "support/Process.h"

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
    QByteArray readRaw() const { return readFile(file()); }

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
        EXPECT_EQ(readRaw(), bytes);
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

} // namespace
