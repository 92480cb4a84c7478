// The Plasma layouts backend and the real tolvar against a headless KWin on
// the private session's bus, which each test starts with its own layouts.
#include "platform/linux/plasma/PlasmaInputSources.h"

#include "support/DesktopSession.h"

#include <QFile>
#include <QJsonArray>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QDBusMessage layouts(const QString &method, const QVariantList &arguments = {})
{
    return DesktopSession::call("org.kde.keyboard", "/Layouts", "org.kde.KeyboardLayouts", method, arguments);
}

uint index()
{
    return layouts("getLayout").arguments().value(0).toUInt();
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
        ASSERT_TRUE(QFile::copy(installed, m_folder.filePath("kwin_wayland")));
        m_session.environment.insert("TOLVAR_INPUT_BACKEND", "");
        m_session.environment.insert("XDG_CURRENT_DESKTOP", "KDE");
    }

    static void configure(const char *layouts, const char *variants)
    {
        ASSERT_TRUE(
            writeFile(qEnvironmentVariable("XDG_CONFIG_HOME") + "/kxkbrc",
                      QByteArray("[Layout]\nLayoutList=") + layouts + "\nVariantList=" + variants + "\nUse=true\n"));
    }

    void startKWin(const char *layouts, const char *variants)
    {
        configure(layouts, variants);
        ASSERT_TRUE(m_session.start(
            m_folder.filePath("kwin_wayland"),
            {"--virtual", "--width", "1024", "--height", "768", "--socket", "tolvar-kwin"},
            [] { return DesktopSession::onBus("org.kde.keyboard"); }, 15000));
    }

    QTemporaryDir m_folder;
    DesktopSession m_session;
};

TEST_F(PlasmaTest, ListsAndSetsByNameAndVariant)
{
    startKWin("us,de,de", ",,neo");
    EXPECT_EQ(m_session.listed(), (QStringList{"us", "de", "de(neo)"}));
    for (const auto &[id, expected] : {std::pair{"de(neo)", 2u}, std::pair{"de", 1u}}) {
        const ProcessResult set = m_session.tolvar({"set", id});
        EXPECT_EQ(set.exitCode, 0) << id << set.err.constData();
        EXPECT_EQ(index(), expected) << id;
    }
    EXPECT_EQ(m_session.tolvar({"set", "fr"}).exitCode, 1);
    configure("de,us", ",neo"); // not yet reloaded: variants that no longer belong to the running layouts
    EXPECT_EQ(m_session.listed(), (QStringList{"us", "de", "de"}));
}

TEST_F(PlasmaTest, DoctorWarnsOfSwitchingPerWindow)
{
    startKWin("us,de", ",");
    QFile kxkbrc(qEnvironmentVariable("XDG_CONFIG_HOME") + "/kxkbrc");
    ASSERT_TRUE(kxkbrc.open(QIODevice::Append));
    kxkbrc.write("SwitchMode=Window\n");
    kxkbrc.close();
    const ProcessResult result = m_session.tolvar({"doctor", "--json"});
    QStringList verdicts;
    for (const QJsonValue check : DesktopSession::json(result)["checks"].toArray())
        verdicts << check["id"].toString() + ' ' + check["verdict"].toString();
    EXPECT_TRUE(verdicts.contains("framework ok")) << result.out.constData();
    EXPECT_TRUE(verdicts.contains("desktop-switching warn")) << result.out.constData();
}

TEST_F(PlasmaTest, BackgroundInstanceKeepsThePinAcrossAnOutsideSwitchAndANewList)
{
    startKWin("us,de", ",");
    ASSERT_TRUE(m_session.keep("de", [] { return index() == 1; }));
    layouts("setLayout", {0u});
    EXPECT_TRUE(spinUntil([] { return index() == 1; }, 5000));

    // de moves to the front: the pin follows the name, not the index.
    QObject context;
    int announced = 0;
    ASSERT_TRUE(PlasmaInputSources::live().observeEnabled(&context, [&] { ++announced; }));
    configure("de,us", ",");
    QDBusConnection::sessionBus().send(QDBusMessage::createSignal("/Layouts", "org.kde.keyboard", "reloadConfig"));
    ASSERT_TRUE(spinUntil([&] { return announced > 0; }, 5000));
    EXPECT_EQ(m_session.listed(), (QStringList{"de", "us"}));
    layouts("setLayout", {1u});
    EXPECT_TRUE(spinUntil([] { return index() == 0; }, 5000));
    // Plasma's service going, as with a single layout, is a change too.
    const int before = announced;
    m_session.stop();
    EXPECT_TRUE(spinUntil([&] { return announced > before; }, 5000));
}

} // namespace
