// The real tolvar command and background instance against a headless GNOME
// Shell in the private session: sources xkb:us (current), xkb:de and
// ibus:hangul, and Tolvar's extension installed under the temporary HOME.
#include "core/config/ConfigStore.h"
#include "gnome/GnomeShell.h"
#include "platform/GnomeShellExtension.h"
#include "platform/linux/IBusAddress.h"
#include "platform/linux/IBusInputSources.h"

#include "support/Process.h"
#include "support/Spin.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString executable = TOLVAR_EXECUTABLE;
const QString us = "xkb:us";
const QString german = "xkb:de";
const QString hangul = "ibus:hangul";

class GnomeEndToEndTest : public testing::Test
{
protected:
    void SetUp() override
    {
        // Never the user's own shell settings.
        ASSERT_FALSE(qEnvironmentVariableIsEmpty("TOLVAR_PRIVATE_SESSION")) << "run through scripts/private-session";
        if (QStandardPaths::findExecutable("gnome-shell").isEmpty())
            GTEST_SKIP() << "gnome-shell is not installed (scripts/install-deps installs it)";
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        qputenv("GSETTINGS_BACKEND", "dconf");
        qunsetenv("TOLVAR_INPUT_BACKEND");
        const QString failed = m_shell.start(extensionEnabled());
        ASSERT_TRUE(failed.isEmpty()) << qPrintable(failed);
    }

    void TearDown() override
    {
        if (m_instance) {
            m_instance->kill();
            m_instance->waitForFinished();
        }
    }

    virtual bool extensionEnabled() const { return true; }

    static ProcessResult tolvar(const QStringList &arguments) { return runProcess(executable, arguments); }
    static QJsonObject json(const ProcessResult &result) { return QJsonDocument::fromJson(result.out).object(); }
    static QString errorCode(const ProcessResult &result)
    {
        return json(result)["error"].toObject()["code"].toString();
    }
    static QJsonObject status() { return json(tolvar({"status", "--json"}))["status"].toObject(); }

    GnomeShell m_shell;
    std::unique_ptr<QProcess> m_instance;
};

TEST_F(GnomeEndToEndTest, ListAndStatusShowTheShellsSources)
{
    const ProcessResult list = tolvar({"list", "--json"});
    ASSERT_EQ(list.exitCode, 0) << list.out.constData();
    QStringList ids;
    for (const QJsonValue source : json(list)["sources"].toArray()) {
        ids << source.toObject()["id"].toString();
        EXPECT_FALSE(source.toObject()["name"].toString().isEmpty()) << qPrintable(ids.last());
    }
    EXPECT_EQ(ids, GnomeShell::sources);
    const QJsonObject now = status();
    EXPECT_EQ(now["backend"].toString(), "gnome");
    EXPECT_FALSE(now.contains("backendError"));
    EXPECT_EQ(now["current"].toObject()["id"].toString(), us);
}

TEST_F(GnomeEndToEndTest, SetMakesTheShellSwitch)
{
    for (const QString &id : {german, hangul}) {
        const ProcessResult result = tolvar({"set", id});
        EXPECT_EQ(result.exitCode, 0) << qPrintable(id) << result.err.constData();
        EXPECT_EQ(m_shell.current(), id);
        // The shell's own record of the user's last choice, written by the shell alone.
        const QStringList typeAndName = id.split(':');
        EXPECT_TRUE(GnomeShell::setting("org.gnome.desktop.input-sources", "mru-sources")
                        .startsWith(QString("[('%1', '%2')").arg(typeAndName[0], typeAndName[1])));
    }
}

TEST_F(GnomeEndToEndTest, BackgroundBringsThePinnedSourceBackAfterTheShellSwitches)
{
    ASSERT_TRUE(ConfigStore::write(Config{german, true, std::nullopt, true}, ConfigStore::directory()).ok());
    m_instance = std::make_unique<QProcess>();
    m_instance->start(executable, {"background"});
    ASSERT_TRUE(spinUntil([] { return status()["state"].toString() == "keeping"; }, 15000))
        << qPrintable(status()["state"].toString());
    ASSERT_EQ(m_shell.current(), german);
    // What the shell does when the user picks a source from its menu.
    ASSERT_EQ(m_shell.callExtension("Activate", {us}).arguments().value(0).toBool(), true);
    EXPECT_TRUE(spinUntil([&] { return m_shell.current() == german; }, 5000)) << qPrintable(m_shell.current());
}

TEST_F(GnomeEndToEndTest, RemovedSourceIsReportedMissing)
{
    ASSERT_TRUE(ConfigStore::write(Config{german, true, std::nullopt, true}, ConfigStore::directory()).ok());
    ASSERT_TRUE(GnomeShell::configure({"('xkb','us')", "('ibus','hangul')"}));
    ASSERT_TRUE(spinUntil([&] { return m_shell.sourceIDs() == QStringList{us, hangul}; }, 10000));
    EXPECT_EQ(errorCode(tolvar({"apply", "--json"})), "missing_source");
    EXPECT_FALSE(status()["target"].toObject()["available"].toBool(true));
    EXPECT_EQ(m_shell.current(), us);
}

class GnomeWithoutExtensionTest : public GnomeEndToEndTest
{
protected:
    bool extensionEnabled() const override { return false; }
};

TEST_F(GnomeWithoutExtensionTest, SaysHowToTurnItOnAndLeavesIBusAlone)
{
    const InputSources ibus = IBusInputSources::at(IBusAddress::published);
    const QString engine = ibus.currentID();
    const QJsonObject now = status();
    EXPECT_EQ(now["backend"].toString(), "gnome");
    EXPECT_EQ(now["backendError"].toObject()["code"].toString(), "gnome_extension_missing");
    EXPECT_TRUE(tolvar({"status"}).out.contains(("gnome-extensions enable " + GnomeShellExtension::uuid).toUtf8()));
    for (const QStringList &command : {QStringList{"list"}, {"set", "hangul"}, {"set", hangul}}) {
        const ProcessResult result = tolvar(command + QStringList{"--json"});
        EXPECT_EQ(result.exitCode, 1) << qPrintable(command.join(' '));
        EXPECT_EQ(errorCode(result), "gnome_extension_missing") << qPrintable(command.join(' '));
    }
    EXPECT_EQ(ibus.currentID(), engine) << "no IBus switch behind the shell's back";

    tolvar({"install", german});
    EXPECT_TRUE(GnomeShell::setting("org.gnome.shell", "enabled-extensions").contains(GnomeShellExtension::uuid));
}

} // namespace
