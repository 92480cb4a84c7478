#include "core/config/Config.h"
#include "core/l10n/StringTable.h"
#include "platform/ExecutableLocation.h"
#include "support/ParamName.h"
#include "support/Process.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString executable = QStringLiteral(TOLVAR_EXECUTABLE);

QString tableText(const QString &code, const QString &key)
{
    const auto table = StringTable::load(ExecutableLocation::resourceDirectory(executable), code);
    return table ? table->text(key).value_or(QString()) : QString();
}

// A fresh home with an optional config.json, and a command link to the program
// outside the build tree, as the login item's link would be.
class EntryProcessTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(m_home.filePath(QStringLiteral(".local/bin"))));
        m_link = m_home.filePath(QStringLiteral(".local/bin/tolvar"));
        ASSERT_TRUE(QFile::link(executable, m_link));
        m_environment.insert(QStringLiteral("HOME"), m_home.path());
        for (const char *name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES"})
            m_environment.remove(QLatin1String(name));
        m_environment.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    }

    void writeConfig(const QByteArray &bytes)
    {
        ASSERT_TRUE(
            writeFile(m_home.filePath(QStringLiteral("Library/Application Support/Tolvar/config.json")), bytes));
    }

    ProcessResult run(const QStringList &arguments) { return runProcess(m_link, arguments, m_environment); }

    QTemporaryDir m_home;
    QString m_link;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

struct LanguageCase
{
    const char *name;
    QByteArray config; // empty: no file
    const char *environmentLanguage;
    const char *expected;
};

class EntryLanguageTest : public EntryProcessTest, public testing::WithParamInterface<LanguageCase>
{
};

TEST_P(EntryLanguageTest, HelpSpeaksTheChosenLanguageThroughTheLink)
{
    const LanguageCase &row = GetParam();
    if (!row.config.isEmpty())
        writeConfig(row.config);
    if (row.environmentLanguage)
        m_environment.insert(QStringLiteral("LANGUAGE"), QLatin1String(row.environmentLanguage));

    const ProcessResult result = run({QStringLiteral("help")});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_TRUE(result.err.isEmpty());
    const QString expected = tableText(QLatin1String(row.expected), QStringLiteral("cli.usage.header"));
    ASSERT_FALSE(expected.isEmpty());
    EXPECT_EQ(QString::fromUtf8(result.out.left(result.out.indexOf('\n'))), expected);
}

QByteArray stored(const char *language)
{
    return Config{.enabled = false, .language = QLatin1String(language), .onboardingCompleted = false}.encoded();
}

INSTANTIATE_TEST_SUITE_P(Entry, EntryLanguageTest,
                         testing::Values(LanguageCase{"StoredJapanese", stored("ja"), nullptr, "ja"},
                                         LanguageCase{"StoredKoreanBeatsSystem", stored("ko"), "zh_TW", "ko"},
                                         LanguageCase{"UnknownStoredFollowsSystem", stored("fr"), "zh_CN", "zh-Hans"},
                                         // Undecodable: the booleans are missing.
                                         LanguageCase{"BrokenFileFollowsSystem", R"({"language":"ja"})", "ko", "ko"},
                                         LanguageCase{"SystemFrenchThenJapanese", {}, "fr_FR:ja_JP", "ja"},
                                         LanguageCase{"SystemFrenchAlone", {}, "fr_FR", "en"}),
                         ParamName());

} // namespace
