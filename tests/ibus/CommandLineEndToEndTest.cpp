// The real tolvar command against the private session's ibus-daemon (engines
// xkb:us::eng selected, xkb:de::deu and hangul) and its temporary HOME.
#include "core/config/ConfigStore.h"
#include "core/instance/InstanceLock.h"
#include "core/l10n/L10n.h"
#include "core/l10n/StringTable.h"
#include "platform/AppPlaces.h"
#include "platform/ExecutableLocation.h"
#include "platform/input/InputSources.h"
#include "platform/linux/ibus/IBusAddress.h"

#include "support/DesktopSession.h"
#include "support/ParamName.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

const QString us = "xkb:us::eng";
const QString german = "xkb:de::deu";
const QString hangul = "hangul";

QString english(const char *key)
{
    const auto table = StringTable::load(ExecutableLocation::resourceDirectory(TOLVAR_EXECUTABLE), "en");
    return table ? table->text(QLatin1String(key)).value_or(QString()) : QString();
}

class CommandLineEndToEndTest : public testing::Test, protected DesktopSession
{
protected:
    void SetUp() override
    {
        if (IBusAddress::published().isEmpty())
            GTEST_SKIP() << "needs the private IBus of scripts/private-session --ibus";
        environment.insert("LANG", "C.UTF-8");
        environment.remove("LANGUAGE");
        ASSERT_EQ(m_system.select(us), 0);
    }

    static void writeRaw(const QByteArray &bytes) { ASSERT_TRUE(writeFile(ConfigStore::file(), bytes)); }

    static QByteArray readRaw() { return readFile(ConfigStore::file()); }

    InputSources m_system = InputSources::live();
};

TEST_F(CommandLineEndToEndTest, StatusWithNothingSetUpIsStopped)
{
    const ProcessResult result = tolvar({"status", "--json"});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    const QJsonObject status = json(result)["status"].toObject();
    EXPECT_EQ(status["state"].toString(), "stopped");
    EXPECT_FALSE(status["running"].toBool(true));
    EXPECT_FALSE(status["enabled"].toBool(true));
    EXPECT_FALSE(status.contains("target"));
    EXPECT_EQ(status["current"].toObject()["id"].toString(), us);
    EXPECT_FALSE(QFile::exists(ConfigStore::file())) << "status must not write";

    const ProcessResult human = tolvar({});
    ASSERT_EQ(human.exitCode, 0);
    EXPECT_TRUE(human.out.endsWith((english("cli.msg.stopped") + "\n").toUtf8()));
}

TEST_F(CommandLineEndToEndTest, SetSwitchesAndRemembers)
{
    // The first set reports in JSON: what it reports is the file after its edit.
    for (const auto &[id, asJson] : {std::pair(german, true), std::pair(hangul, false)}) {
        const ProcessResult result = tolvar(asJson ? QStringList{"set", id, "--json"} : QStringList{"set", id});
        EXPECT_EQ(result.exitCode, 0) << qPrintable(id) << result.err.constData();
        const QJsonObject status = json(result)["status"].toObject();
        EXPECT_EQ(status["target"].toObject()["id"].toString(), asJson ? id : QString());
        EXPECT_EQ(status["onboardingCompleted"].toBool(), asJson);
        EXPECT_EQ(result.out.isEmpty(), !asJson);
        EXPECT_EQ(m_system.currentID(), id);
        EXPECT_EQ(ConfigStore::load().value(), (Config{.sourceID = id, .enabled = false, .onboardingCompleted = true}));
    }
}

TEST_F(CommandLineEndToEndTest, SetUnknownEngineChangesNothing)
{
    writeRaw(Config{.sourceID = german, .enabled = true, .onboardingCompleted = true}.encoded());
    const QByteArray before = readRaw();
    const ProcessResult human = tolvar({"set", "xkb:fr::fra"});
    EXPECT_EQ(human.exitCode, 1);
    EXPECT_EQ(human.err, (english("warn.missing") + "\n").toUtf8());
    EXPECT_TRUE(human.out.isEmpty());

    const ProcessResult machine = tolvar({"set", "xkb:fr::fra", "--json"});
    EXPECT_EQ(machine.exitCode, 1);
    EXPECT_EQ(json(machine)["error"].toObject()["code"].toString(), "missing_source");
    EXPECT_EQ(readRaw(), before);
    EXPECT_EQ(m_system.currentID(), us);
}

struct ApplyCase
{
    const char *name;
    std::optional<QByteArray> file;
    const char *code;
};

class CommandLineApplyFailureTest : public CommandLineEndToEndTest, public testing::WithParamInterface<ApplyCase>
{
};

TEST_P(CommandLineApplyFailureTest, FailsWithoutTouchingTheFile)
{
    if (GetParam().file)
        writeRaw(*GetParam().file);
    const ProcessResult result = tolvar({"apply", "--json"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.isEmpty());
    EXPECT_EQ(json(result)["error"].toObject()["code"].toString(), GetParam().code);
    EXPECT_EQ(readRaw(), GetParam().file.value_or(QByteArray()));
    EXPECT_EQ(m_system.currentID(), us);
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, CommandLineApplyFailureTest,
    testing::Values(ApplyCase{"NoFile", std::nullopt, "no_target"},
                    ApplyCase{"CorruptFile", QByteArray(R"({"sourceID":"hangul"})"), "invalid_config"},
                    ApplyCase{"NothingPinned", Config{}.encoded(), "no_target"},
                    ApplyCase{"PinnedEngineGone",
                              Config{.sourceID = "gone", .enabled = true, .onboardingCompleted = true}.encoded(),
                              "missing_source"}),
    ParamName());

TEST_F(CommandLineEndToEndTest, PauseResumeAndToggleFlipKeepingAndApplyStillSwitches)
{
    writeRaw(Config{.sourceID = german, .enabled = true, .language = "ja", .onboardingCompleted = true}.encoded());
    const auto keeping = [&](const char *command) {
        const ProcessResult result = tolvar({command, "--json"});
        EXPECT_EQ(result.exitCode, 0) << command << result.out.constData();
        EXPECT_EQ(json(result)["status"].toObject()["enabled"].toBool(), ConfigStore::load()->enabled);
        return ConfigStore::load()->enabled;
    };
    EXPECT_FALSE(keeping("toggle"));
    EXPECT_TRUE(keeping("toggle"));
    EXPECT_TRUE(keeping("resume"));
    EXPECT_FALSE(keeping("pause"));
    EXPECT_EQ(ConfigStore::load()->language, "ja") << "nothing but keeping changes";

    ASSERT_EQ(m_system.select(us), 0);
    const ProcessResult applied = tolvar({"apply", "--json"});
    ASSERT_EQ(applied.exitCode, 0) << applied.out.constData();
    EXPECT_EQ(m_system.currentID(), german) << "apply switches even while paused";
}

TEST_F(CommandLineEndToEndTest, ListMarksExactlyTheCurrentEngine)
{
    ASSERT_EQ(m_system.select(german), 0);
    const ProcessResult result = tolvar({"list"});
    ASSERT_EQ(result.exitCode, 0);
    const QStringList lines = QString::fromUtf8(result.out).split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines.filter(QRegularExpression("^\\* ")), QStringList{"* xkb:de::deu  German"});
    EXPECT_EQ(lines.filter(QRegularExpression("^  ")).size(), 2);
}

// Help itself is the entry's test; which words are refused, the parser's.
TEST_F(CommandLineEndToEndTest, AnUnknownWordGetsTheUsageAndFails)
{
    const ProcessResult unknown = tolvar({"lsit"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_TRUE(unknown.out.isEmpty());
    EXPECT_TRUE(unknown.err.startsWith(english("cli.usage.header").toUtf8()));
    const ProcessResult unknownJson = tolvar({"lsit", "--json"});
    EXPECT_EQ(unknownJson.exitCode, 1);
    EXPECT_TRUE(unknownJson.err.isEmpty());
    EXPECT_EQ(json(unknownJson)["error"].toObject()["code"].toString(), "invalid_arguments");
}

// Each row sets up what goes wrong, from a pin that works on the private IBus.
struct DoctorCase
{
    const char *name;
    std::function<void(QProcessEnvironment &, InstanceLock &)> arrange;
    QList<std::pair<QString, QString>> verdicts;
    int exitCode;
    QByteArray said = {};
};

class DoctorTest : public CommandLineEndToEndTest, public testing::WithParamInterface<DoctorCase>
{
};

TEST_P(DoctorTest, NamesWhatIsWrongAndFailsOnlyOnAFailure)
{
    writeRaw(Config{.sourceID = german, .enabled = true, .onboardingCompleted = true}.encoded());
    InstanceLock lock;
    GetParam().arrange(environment, lock);
    const bool regular = QFileInfo(ConfigStore::file()).isFile();
    const QByteArray before = regular ? readRaw() : QByteArray();
    const ProcessResult result = tolvar({"doctor", "--json"});
    EXPECT_EQ(result.exitCode, GetParam().exitCode) << result.out.constData();
    EXPECT_EQ(json(result)["ok"].toBool(), GetParam().exitCode == 0);
    QHash<QString, QString> verdicts;
    for (const QJsonValue check : json(result)["checks"].toArray())
        verdicts.insert(check["id"].toString(), check["verdict"].toString());
    EXPECT_EQ(verdicts.size(), 10);
    EXPECT_TRUE(result.out.contains(GetParam().said)) << result.out.constData();
    for (const auto &[id, verdict] : GetParam().verdicts)
        EXPECT_EQ(verdicts.value(id), verdict) << qPrintable(id) << result.out.constData();
    EXPECT_EQ(tolvar({"doctor"}).exitCode, GetParam().exitCode);
    if (regular) {
        EXPECT_EQ(readRaw(), before) << "doctor must not write";
    }
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, DoctorTest,
    testing::Values(
        DoctorCase{"IBusAllOk",
                   [](QProcessEnvironment &, InstanceLock &) {},
                   {{"framework", "ok"}, {"pinned-source", "ok"}, {"desktop-switching", "ok"}, {"config", "ok"}},
                   0},
        DoctorCase{"IBusStopped",
                   [](QProcessEnvironment &environment, InstanceLock &) {
                       environment.insert("IBUS_ADDRESS", "unix:path=/nonexistent/ibus");
                   },
                   {{"framework", "fail"}, {"pinned-source", "info"}},
                   1},
        DoctorCase{"FifoAtConfig",
                   [](QProcessEnvironment &, InstanceLock &) {
                       QFile::remove(ConfigStore::file());
                       ASSERT_EQ(::mkfifo(QFile::encodeName(ConfigStore::file()).constData(), 0600), 0);
                   },
                   {{"config", "fail"}, {"framework", "ok"}},
                   1},
        DoctorCase{"AutostartExecGone",
                   [](QProcessEnvironment &, InstanceLock &) {
                       ASSERT_TRUE(writeFile(qEnvironmentVariable("XDG_CONFIG_HOME") + "/autostart/app.tolvar.desktop",
                                             "[Desktop Entry]\nType=Application\nExec=\"/gone/tol var\" background\n"));
                   },
                   {{"login-item", "fail"}},
                   1},
        DoctorCase{"StaleInstanceOfAnotherVersion",
                   [](QProcessEnvironment &, InstanceLock &lock) {
                       ASSERT_TRUE(QDir().mkpath(AppPlaces::sessionLockDirectory()));
                       ASSERT_TRUE(
                           lock.acquire(InstanceLock::fileIn(AppPlaces::sessionLockDirectory()),
                                        {.version = "0.0.1", .build = 1, .pid = QCoreApplication::applicationPid()})
                               .value());
                   },
                   {{"instance", "warn"}, {"login-item", "info"}},
                   0,
                   "process " + QByteArray::number(QCoreApplication::applicationPid())},
        DoctorCase{"PinOfAnotherStack",
                   [](QProcessEnvironment &, InstanceLock &) {
                       ASSERT_TRUE(writeFile(ConfigStore::file(), Config{.sourceID = "xkb:de"}.encoded()));
                   },
                   {{"pinned-source", "fail"}},
                   1,
                   "tolvar set xkb:de::deu"}),
    ParamName());

} // namespace
