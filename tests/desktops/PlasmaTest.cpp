// The Plasma layouts backend and the real tolvar against a headless KWin on
// the private session's bus, which each test starts with its own layouts.
#include "platform/linux/plasma/PlasmaInputSources.h"

#include "support/DesktopSession.h"
#include "support/StoppedStack.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVirtualObject>
#include <QFile>
#include <QJsonArray>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

// One entry of getLayoutsList, (sss) on the bus.
struct LayoutNames
{
    QString shortName, displayName, longName;
};
Q_DECLARE_METATYPE(LayoutNames)

QDBusArgument &operator<<(QDBusArgument &argument, const LayoutNames &names)
{
    argument.beginStructure();
    argument << names.shortName << names.displayName << names.longName;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, LayoutNames &names)
{
    argument.beginStructure();
    argument >> names.shortName >> names.displayName >> names.longName;
    argument.endStructure();
    return argument;
}

namespace {

QDBusMessage layouts(const QString &method, const QVariantList &arguments = {})
{
    return DesktopSession::call("org.kde.keyboard", "/Layouts", "org.kde.KeyboardLayouts", method, arguments);
}

uint index()
{
    return layouts("getLayout").arguments().value(0).toUInt();
}

// Tells KWin that kxkbrc changed, as Plasma's keyboard settings do on saving.
// Up to Plasma 6.3 they send org.kde.keyboard reloadConfig on /Layouts, which
// KWin up to 6.3 listens for (keyboard_layout.cpp, KeyboardLayout::init). In
// 6.7 they write LayoutList and VariantList with KConfig's Notify flag
// (Notifiers=true in kcms/keyboard/keyboardsettings.kcfgc), so KConfig sends
// org.kde.kconfig.notify ConfigChanged on /kxkbrc with the changed keys by
// group; KWin 6.7 dropped reloadConfig and reloads through a KConfigWatcher
// (KeyboardLayout::handleXkbConfigChanged, for the group "Layout").
void announceNewLayouts()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.send(QDBusMessage::createSignal("/Layouts", "org.kde.keyboard", "reloadConfig"));
    qDBusRegisterMetaType<QByteArrayList>();
    qDBusRegisterMetaType<QHash<QString, QByteArrayList>>();
    QDBusMessage changed = QDBusMessage::createSignal("/kxkbrc", "org.kde.kconfig.notify", "ConfigChanged");
    changed << QVariant::fromValue(QHash<QString, QByteArrayList>{{"Layout", {"LayoutList", "VariantList"}}});
    bus.send(changed);
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

// KWin as it serves /Layouts with no keyboard attached: an empty list, on a
// connection of its own.
class KeyboardlessKWin : public QDBusVirtualObject
{
public:
    KeyboardlessKWin()
    {
        qDBusRegisterMetaType<LayoutNames>();
        qDBusRegisterMetaType<QList<LayoutNames>>();
        m_bus.registerVirtualObject("/Layouts", this);
        m_bus.registerService("org.kde.keyboard");
    }
    ~KeyboardlessKWin() override { QDBusConnection::disconnectFromBus(m_bus.name()); }
    KeyboardlessKWin(const KeyboardlessKWin &) = delete;
    KeyboardlessKWin &operator=(const KeyboardlessKWin &) = delete;

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() == "getLayoutsList")
            return connection.send(message.createReply(QVariant::fromValue(QList<LayoutNames>())));
        if (message.member() == "getLayout")
            return connection.send(message.createReply(0u));
        return false;
    }
    QString introspect(const QString &) const override { return {}; }

private:
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "keyboardless-kwin");
};

// The real tolvar, while this thread goes on answering as the fake KWin.
QByteArray tolvarAnswered(const QStringList &arguments, int *exitCode = nullptr)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TOLVAR_INPUT_BACKEND", "");
    environment.insert("XDG_CURRENT_DESKTOP", "KDE");
    environment.insert("LANGUAGE", "en");
    process.setProcessEnvironment(environment);
    process.start(TOLVAR_EXECUTABLE, arguments);
    if (!spinUntil([&] { return process.state() == QProcess::NotRunning; }, 30000))
        process.kill();
    process.waitForFinished();
    if (exitCode)
        *exitCode = process.exitCode();
    return process.readAllStandardOutput();
}

TEST(PlasmaWithoutKeyboardTest, IsUnavailableWithAReasonRatherThanWithoutSources)
{
    KeyboardlessKWin kwin;
    ASSERT_TRUE(DesktopSession::onBus("org.kde.keyboard"));
    int exitCode = 0;
    const QByteArray list = tolvarAnswered({"list", "--json"}, &exitCode);
    EXPECT_NE(exitCode, 0) << list.constData();
    EXPECT_EQ(QJsonDocument::fromJson(list)["error"]["code"].toString(), "input_method_unavailable")
        << list.constData();
    const QByteArray status = tolvarAnswered({"status", "--json"});
    EXPECT_EQ(QJsonDocument::fromJson(status)["status"]["backend"].toString(), "plasma") << status.constData();
    EXPECT_EQ(QJsonDocument::fromJson(status)["status"]["backendError"]["detail"].toString(),
              "KDE Plasma has no keyboard layout.")
        << status.constData();
    const QByteArray said = tolvarAnswered({"status"});
    EXPECT_TRUE(said.contains("KDE Plasma has no keyboard layout")) << said.constData();
}

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
    // At rest KWin is asked nothing, and after a switch its signal says all: stopped, it still answers.
    const InputSources backend = PlasmaInputSources::live();
    const qint64 kwin = m_session.program().processId();
    EXPECT_EQ(StoppedStack::look(backend, kwin).enabled, (QStringList{"us", "de"}));
    layouts("setLayout", {0u});
    EXPECT_TRUE(spinUntil([] { return index() == 1; }, 5000));
    spinUntil([] { return false; }, 300);
    EXPECT_EQ(StoppedStack::look(backend, kwin, false).current, "de");

    // de moves to the front: the pin follows the name, not the index.
    QObject context;
    int announced = 0;
    ASSERT_TRUE(PlasmaInputSources::live().observeEnabled(&context, [&] { ++announced; }));
    configure("de,us", ",");
    announceNewLayouts();
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
