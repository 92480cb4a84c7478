#include "core/config/ConfigStore.h"
#include "support/FakeNotifications.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include "support/ParamName.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace {

class ConfigStoreTest : public testing::Test
{
protected:
    QString directory() const { return m_home.filePath(QStringLiteral(".config/tolvar")); }
    QString file() const { return ConfigStore::fileIn(directory()); }

    void writeRaw(const QByteArray &bytes) const
    {
        QDir().mkpath(directory());
        QFile out(file());
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    }

    QByteArray readRaw() const
    {
        QFile in(file());
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

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
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
                                      | QFile::WriteOther | QFile::ExeOther | QFile::ExeOwner;
    EXPECT_EQ(lock.permissions() & (others | QFile::ReadOwner | QFile::WriteOwner),
              QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_EQ(ConfigStore::loadFrom(directory()).value(), written.value());
    EXPECT_EQ(*m_notifications.posted, QStringList{ConfigStore::changed});

    // The same edit again changes nothing, so nobody is told.
    ASSERT_TRUE(ConfigStore::mutate(directory(), pin(QStringLiteral("xkb:de::ger")), m_notifications.record()).ok());
    EXPECT_EQ(*m_notifications.posted, QStringList{ConfigStore::changed});
}

TEST_F(ConfigStoreTest, MissingFileLoadsDefaults)
{
    const Expected<Config> loaded = ConfigStore::loadFrom(directory());
    ASSERT_TRUE(loaded.ok());
    EXPECT_EQ(loaded.value(), Config{});
    EXPECT_FALSE(QFileInfo::exists(directory())) << "reading must not create anything";
}

TEST_F(ConfigStoreTest, ExtraKeysDisappearOnTheNextWrite)
{
    writeRaw(R"({"enabled":false,"onboardingCompleted":true,"colour":"teal"})");
    ASSERT_TRUE(ConfigStore::mutate(directory(), pin(QStringLiteral("a")), m_notifications.record()).ok());
    EXPECT_FALSE(readRaw().contains("colour"));
    EXPECT_TRUE(ConfigStore::loadFrom(directory())->onboardingCompleted);
}

struct RefusedCase
{
    const char *name;
    QByteArray bytes;
    bool editFails;
};

class ConfigStoreRefusalTest : public ConfigStoreTest, public testing::WithParamInterface<RefusedCase>
{
};

// An undecodable file or a failing edit: the bytes stay, and nobody is told.
TEST_P(ConfigStoreRefusalTest, WritesAndPostsNothing)
{
    writeRaw(GetParam().bytes);
    bool editRan = false;
    const ConfigStore::Edit edit = [&](Config &config) -> Expected<void> {
        editRan = true;
        config.enabled = !config.enabled;
        if (GetParam().editFails)
            return Error::other(QStringLiteral("refused"));
        return {};
    };
    const Expected<Config> result = ConfigStore::mutate(directory(), edit, m_notifications.record());
    EXPECT_FALSE(result.ok());
    EXPECT_EQ(editRan, GetParam().editFails) << "the edit must not see an undecodable record";
    EXPECT_EQ(readRaw(), GetParam().bytes);
    EXPECT_TRUE(m_notifications.posted->isEmpty());
}

INSTANTIATE_TEST_SUITE_P(ConfigStore, ConfigStoreRefusalTest,
                         testing::Values(RefusedCase{"OnlySourceID", R"({"sourceID":"xkb:us::eng"})", false},
                                         RefusedCase{"NotJson", "enabled = yes", false},
                                         RefusedCase{"FailingEdit", R"({"enabled":true,"onboardingCompleted":true})",
                                                     true}),
                         ParamName());

TEST_F(ConfigStoreTest, LoadOrDefaultForgivesABadFile)
{
    writeRaw(R"({"sourceID":"xkb:us::eng"})");
    EXPECT_FALSE(ConfigStore::loadFrom(directory()).ok());
    EXPECT_EQ(ConfigStore::loadOrDefault(directory()), Config{});
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

TEST_F(ConfigStoreTest, SaveUsesTheHomeDirectory)
{
    const QByteArray previousHome = qgetenv("HOME");
    const QByteArray previousConfigHome = qgetenv("XDG_CONFIG_HOME");
    qputenv("HOME", m_home.path().toLocal8Bit());
    qunsetenv("XDG_CONFIG_HOME");
    const Config config{QStringLiteral("xkb:fr::fra"), true, QStringLiteral("ko"), true};
    const Expected<void> saved = ConfigStore::save(config, m_notifications.record());
    qputenv("HOME", previousHome);
    qputenv("XDG_CONFIG_HOME", previousConfigHome);

    ASSERT_TRUE(saved.ok()) << qPrintable(saved.error().description());
    EXPECT_EQ(ConfigStore::loadFrom(directory()).value(), config);
    EXPECT_EQ(*m_notifications.posted, QStringList{ConfigStore::changed});
}

} // namespace
