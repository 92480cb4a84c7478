// The Fcitx5 backend and the real tolvar against the private session's own
// fcitx5 (group: keyboard-us, keyboard-de, hangul), which the fixture starts.
#include "core/sources/Catalog.h"
#include "platform/linux/Fcitx5InputSources.h"
#include "platform/linux/LinuxInputBackend.h"

#include "support/DesktopSession.h"
#include "support/ParamName.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDir>
#include <QStandardPaths>

#include <gtest/gtest.h>

// One (key, value) of a client's description of itself, a(ss) on the bus.
struct Fcitx5ClientInfo
{
    QString key;
    QString value;
};

inline QDBusArgument &operator<<(QDBusArgument &argument, const Fcitx5ClientInfo &info)
{
    argument.beginStructure();
    argument << info.key << info.value;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument &operator>>(const QDBusArgument &argument, Fcitx5ClientInfo &info)
{
    argument.beginStructure();
    argument >> info.key >> info.value;
    argument.endStructure();
    return argument;
}

Q_DECLARE_METATYPE(Fcitx5ClientInfo)

namespace {

const QString us = "keyboard-us";
const QString german = "keyboard-de";
const QString hangul = "hangul";
const QString service = "org.fcitx.Fcitx5";

bool running()
{
    return DesktopSession::onBus(service);
}

QDBusMessage controller(const QString &method, const QVariantList &arguments = {})
{
    return DesktopSession::call(service, "/controller", "org.fcitx.Fcitx.Controller1", method, arguments);
}

// Another program switching, as Fcitx5's own hotkeys and indicator do.
void switchTo(const QString &name)
{
    controller("SetCurrentIM", {name});
}

QString current()
{
    return controller("CurrentInputMethod").arguments().value(0).toString();
}

// Without a focused input context, as a focused application holds one, Fcitx5 has no current method.
bool focusContext()
{
    qDBusRegisterMetaType<Fcitx5ClientInfo>();
    qDBusRegisterMetaType<QList<Fcitx5ClientInfo>>();
    const QDBusMessage reply =
        DesktopSession::call(service, "/org/freedesktop/portal/inputmethod", "org.fcitx.Fcitx.InputMethod1",
                             "CreateInputContext", {QVariant::fromValue(QList<Fcitx5ClientInfo>{{"program", "test"}})});
    const QString context = reply.arguments().value(0).value<QDBusObjectPath>().path();
    return !context.isEmpty()
           && DesktopSession::call(service, context, "org.fcitx.Fcitx.InputContext1", "FocusIn").type()
                  == QDBusMessage::ReplyMessage;
}

class Fcitx5Test : public testing::Test
{
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable("fcitx5").isEmpty())
            GTEST_SKIP() << "fcitx5 is not installed (scripts/install-deps installs it)";
        m_session.environment.insert("TOLVAR_INPUT_BACKEND", "");
        m_session.environment.remove("XDG_CURRENT_DESKTOP");
        const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME") + "/fcitx5";
        QDir().mkpath(folder);
        QFile profile(folder + "/profile");
        ASSERT_TRUE(profile.open(QIODevice::WriteOnly));
        QByteArray text = "[Groups/0]\nName=Default\nDefault Layout=us\nDefaultIM=" + german.toUtf8() + "\n";
        const QStringList items{us, german, hangul};
        for (qsizetype i = 0; i < items.size(); ++i)
            text += QString("[Groups/0/Items/%1]\nName=%2\nLayout=\n").arg(i).arg(items[i]).toUtf8();
        profile.write(text + "[GroupOrder]\n0=Default\n");
        profile.close();
        ASSERT_TRUE(start());
    }

    bool start()
    {
        return m_session.start("fcitx5", {"-D", "--disable=all", "--enable=dbus,dbusfrontend,keyboard,hangul"}, running,
                               10000)
               && focusContext();
    }

    DesktopSession m_session;
};

TEST_F(Fcitx5Test, ChosenAndListsTheGroupWithNamesAndIcons)
{
    EXPECT_EQ(LinuxInputBackend::choose(LinuxInputBackend::probe()), LinuxInputBackend::Kind::fcitx5);
    const QJsonArray sources = DesktopSession::json(m_session.tolvar({"list", "--json"}))["sources"].toArray();
    ASSERT_EQ(sources.size(), 3);
    EXPECT_EQ(sources[0].toObject()["id"].toString(), us) << "the inactive method is listed first";
    EXPECT_EQ(sources[1].toObject()["name"].toString(), "Keyboard - German");
    EXPECT_EQ(sources[2].toObject()["name"].toString(), "Hangul");
    const std::optional<Source> source = Catalog::find(hangul, Fcitx5InputSources::live());
    ASSERT_TRUE(source);
    EXPECT_TRUE(source->icon()) << "fcitx5-hangul's themed icon";
}

struct SetCase
{
    const char *name;
    QString from;
    QString id;
    int exitCode;
    const char *error;
    QString current;
};

class Fcitx5SetTest : public Fcitx5Test, public testing::WithParamInterface<SetCase>
{
};

TEST_P(Fcitx5SetTest, SwitchesAndReadsBack)
{
    switchTo(GetParam().from);
    const ProcessResult result = m_session.tolvar({"set", GetParam().id, "--json"});
    EXPECT_EQ(result.exitCode, GetParam().exitCode) << result.out.constData() << result.err.constData();
    EXPECT_EQ(DesktopSession::json(result)["error"].toObject()["code"].toString(), GetParam().error);
    EXPECT_EQ(current(), GetParam().current);
}

INSTANTIATE_TEST_SUITE_P(
    Fcitx5, Fcitx5SetTest,
    testing::Values(SetCase{"Hangul", us, hangul, 0, "", hangul}, SetCase{"German", hangul, german, 0, "", german},
                    SetCase{"TheInactiveMethod", hangul, us, 0, "", us},
                    SetCase{"UnknownIsMissing", german, "keyboard-fr", 1, "missing_source", german}),
    ParamName());

TEST_F(Fcitx5Test, BackgroundInstanceUndoesOutsideSwitchesUntilPaused)
{
    ASSERT_TRUE(m_session.keep(german, [] { return current() == german; }));
    switchTo(hangul);
    EXPECT_TRUE(spinUntil([] { return current() == german; }, 5000));

    ASSERT_EQ(m_session.tolvar({"pause"}).exitCode, 0);
    spinUntil([] { return false; }, 1000);
    switchTo(hangul);
    spinUntil([] { return false; }, 2600); // past the engine's next tick
    EXPECT_EQ(current(), hangul);
}

// Fcitx5 5.0.21 declares InputMethodGroupsChanged but does not send it; the
// list is read afresh at each call.
TEST_F(Fcitx5Test, GroupChangeIsListed)
{
    const QDBusMessage set =
        controller("SetInputMethodGroupInfo",
                   {"Default", "us", QVariant::fromValue(QList<Fcitx5ClientInfo>{{us, ""}, {hangul, ""}})});
    ASSERT_EQ(set.type(), QDBusMessage::ReplyMessage) << qPrintable(set.errorMessage());
    EXPECT_EQ(m_session.listed(), (QStringList{us, hangul}));
}

TEST_F(Fcitx5Test, InstanceOutlivesAnFcitx5Restart)
{
    ASSERT_TRUE(m_session.keep(german, [] { return current() == german; }));
    m_session.stop();
    ASSERT_TRUE(spinUntil([] { return !running(); }, 5000));
    ASSERT_TRUE(start());
    // The new input context starts inactive, on keyboard-us.
    EXPECT_TRUE(spinUntil([] { return current() == german; }, 5000));
    switchTo(hangul);
    EXPECT_TRUE(spinUntil([] { return current() == german; }, 5000));
}

// Without a running fcitx5 nothing may start it, neither the choice nor a call.
class Fcitx5AbsentTest : public testing::TestWithParam<const char *>
{
};

TEST_P(Fcitx5AbsentTest, NotChosenAndNeverStarted)
{
    ASSERT_FALSE(running());
    EXPECT_NE(LinuxInputBackend::choose(LinuxInputBackend::probe()), LinuxInputBackend::Kind::fcitx5);
    DesktopSession session;
    session.environment.insert("TOLVAR_INPUT_BACKEND", GetParam());
    for (const char *command : {"list", "status"})
        session.tolvar({command});
    EXPECT_FALSE(running());
}

INSTANTIATE_TEST_SUITE_P(Fcitx5, Fcitx5AbsentTest, testing::Values("", "fcitx5"));

} // namespace
