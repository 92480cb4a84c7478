// The Plasma layouts backend and the real tolvar against a headless KWin on
// the private session's bus, which the fixture starts with the layouts of a
// test row.
#include "core/config/ConfigStore.h"
#include "core/sources/Catalog.h"
#include "platform/linux/PlasmaInputSources.h"

#include "support/Process.h"
#include "support/Spin.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString executable = TOLVAR_EXECUTABLE;

QDBusMessage layouts(const QString &method, const QVariantList &arguments = {})
{
    QDBusMessage message =
        QDBusMessage::createMethodCall("org.kde.keyboard", "/Layouts", "org.kde.KeyboardLayouts", method);
    message.setArguments(arguments);
    return QDBusConnection::sessionBus().call(message, QDBus::Block, 5000);
}

bool offered()
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered("org.kde.keyboard");
}

class PlasmaTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const QString installed = QStandardPaths::findExecutable("kwin_wayland");
        if (installed.isEmpty())
            GTEST_SKIP() << "kwin_wayland is not installed (scripts/install-deps installs it)";
        // The installed file carries a capability that a container refuses; a copy does not.
        m_kwin = m_folder.filePath("kwin_wayland");
        ASSERT_TRUE(QFile::copy(installed, m_kwin));
        m_environment.insert("TOLVAR_INPUT_BACKEND", "");
        m_environment.insert("XDG_CURRENT_DESKTOP", "KDE");
    }

    void TearDown() override
    {
        for (QProcess *process : {m_instance.get(), &m_process}) {
            if (process && process->state() != QProcess::NotRunning) {
                process->kill();
                process->waitForFinished();
            }
        }
    }

    static void configure(const char *layouts, const char *variants)
    {
        QDir().mkpath(qEnvironmentVariable("XDG_CONFIG_HOME"));
        QFile file(qEnvironmentVariable("XDG_CONFIG_HOME") + "/kxkbrc");
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("[Layout]\nLayoutList=") + layouts + "\nVariantList=" + variants + "\nUse=true\n");
    }

    void startKWin(const char *layouts, const char *variants, bool offers = true)
    {
        configure(layouts, variants);
        m_process.setStandardOutputFile(QProcess::nullDevice());
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.start(m_kwin, {"--virtual", "--width", "1024", "--height", "768", "--socket", "tolvar-kwin"});
        ASSERT_TRUE(m_process.waitForStarted());
        // With one layout nothing tells that KWin is up: give it the time it takes with two.
        ASSERT_EQ(spinUntil(offered, offers ? 15000 : 1500), offers);
    }

    ProcessResult tolvar(const QStringList &arguments) { return runProcess(executable, arguments, m_environment); }

    QStringList listed()
    {
        QStringList ids;
        for (const QJsonValue &source :
             QJsonDocument::fromJson(tolvar({"list", "--json"}).out).object()["sources"].toArray())
            ids << source.toObject()["id"].toString();
        return ids;
    }

    static uint index() { return layouts("getLayout").arguments().value(0).toUInt(); }

    QTemporaryDir m_folder;
    QString m_kwin;
    QProcess m_process;
    std::unique_ptr<QProcess> m_instance;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(PlasmaTest, ListsAndSetsByNameAndVariant)
{
    startKWin("us,de,de", ",,neo");
    EXPECT_EQ(listed(), (QStringList{"us", "de", "de(neo)"}));
    for (const auto &[id, expected] : {std::pair{"de(neo)", 2u}, std::pair{"de", 1u}}) {
        const ProcessResult set = tolvar({"set", id});
        EXPECT_EQ(set.exitCode, 0) << id << set.err.constData();
        EXPECT_EQ(index(), expected) << id;
    }
    EXPECT_EQ(tolvar({"set", "fr"}).exitCode, 1);
}

TEST_F(PlasmaTest, BackgroundInstanceKeepsThePinAcrossAnOutsideSwitchAndANewList)
{
    startKWin("us,de", ",");
    ASSERT_TRUE(ConfigStore::write(Config{"de", true, std::nullopt, true}, ConfigStore::directory()).ok());
    m_instance = std::make_unique<QProcess>();
    m_instance->setProcessEnvironment(m_environment);
    m_instance->start(executable, {"background"});
    ASSERT_TRUE(spinUntil([] { return index() == 1; }, 10000));
    layouts("setLayout", {0u});
    EXPECT_TRUE(spinUntil([] { return index() == 1; }, 5000));

    // de moves to the front: the pin follows the name, not the index.
    QObject context;
    int announced = 0;
    ASSERT_TRUE(PlasmaInputSources::live().observeEnabled(&context, [&] { ++announced; }));
    configure("de,us", ",");
    QDBusConnection::sessionBus().send(QDBusMessage::createSignal("/Layouts", "org.kde.keyboard", "reloadConfig"));
    ASSERT_TRUE(spinUntil([&] { return announced > 0; }, 5000));
    EXPECT_EQ(listed(), (QStringList{"de", "us"}));
    layouts("setLayout", {1u});
    EXPECT_TRUE(spinUntil([] { return index() == 0; }, 5000));
}

TEST_F(PlasmaTest, OneLayoutIsNothingToKeep)
{
    startKWin("de", "", false);
    EXPECT_EQ(m_process.state(), QProcess::Running);
    m_environment.insert("TOLVAR_INPUT_BACKEND", "plasma");
    EXPECT_EQ(listed(), QStringList{"de"});
    const ProcessResult set = tolvar({"set", "de"});
    EXPECT_EQ(set.exitCode, 0) << set.err.constData();
    EXPECT_TRUE(set.err.isEmpty());
}

} // namespace
