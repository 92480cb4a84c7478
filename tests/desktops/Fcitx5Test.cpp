// The Fcitx5 backend and the real tolvar against the private session's own
// fcitx5 (group: keyboard-us, keyboard-de, hangul), which the fixture starts.
#include "core/sources/Catalog.h"
#include "platform/linux/fcitx5/Fcitx5InputSources.h"
#include "platform/linux/fcitx5/Fcitx5Poll.h"
#include "platform/linux/input/LinuxInputBackend.h"

#include "desktops/Fcitx5Session.h"
#include "support/ParamName.h"
#include "support/StoppedStack.h"

#include <QFileInfo>
#include <QImage>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

const QString us = "keyboard-us";
const QString german = "keyboard-de";
const QString hangul = "hangul";

class Fcitx5Test : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!Fcitx5Session::installed())
            GTEST_SKIP() << "fcitx5 is not installed (scripts/install-deps installs it)";
        m_session.environment.insert("TOLVAR_INPUT_BACKEND", "");
        m_session.environment.remove("XDG_CURRENT_DESKTOP");
        ASSERT_TRUE(m_session.start({us, german, hangul}, addonBuild()));
    }
    virtual QByteArray addonBuild() const { return {}; }

    Fcitx5Session m_session;
};

TEST_F(Fcitx5Test, ChosenListsTheGroupWithNamesAndIconsAndReadsBack)
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
    EXPECT_EQ(Fcitx5InputSources::live().select("keyboard-nowhere"), InputSources::refused) << "an ignored name";
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
    Fcitx5Session::switchTo(GetParam().from);
    const ProcessResult result = m_session.tolvar({"set", GetParam().id, "--json"});
    EXPECT_EQ(result.exitCode, GetParam().exitCode) << result.out.constData() << result.err.constData();
    EXPECT_EQ(DesktopSession::json(result)["error"].toObject()["code"].toString(), GetParam().error);
    EXPECT_EQ(Fcitx5Session::current(), GetParam().current);
}

INSTANTIATE_TEST_SUITE_P(
    Fcitx5, Fcitx5SetTest,
    testing::Values(SetCase{"Hangul", us, hangul, 0, "", hangul}, SetCase{"German", hangul, german, 0, "", german},
                    SetCase{"TheInactiveMethod", hangul, us, 0, "", us},
                    SetCase{"UnknownIsMissing", german, "keyboard-fr", 1, "missing_source", german}),
    ParamName());

TEST_F(Fcitx5Test, BackgroundInstanceUndoesOutsideSwitchesUntilPausedAndAcrossARestart)
{
    ASSERT_TRUE(m_session.keep(german, [] { return Fcitx5Session::current() == german; }));
    Fcitx5Session::switchTo(hangul);
    EXPECT_TRUE(spinUntil([] { return Fcitx5Session::current() == german; }, 5000));

    ASSERT_EQ(m_session.tolvar({"pause"}).exitCode, 0);
    spinUntil([] { return false; }, 1000);
    Fcitx5Session::switchTo(hangul);
    spinUntil([] { return false; }, 2600); // past the engine's next tick
    EXPECT_EQ(Fcitx5Session::current(), hangul);

    // Across a restart of fcitx5, whose new input context starts on keyboard-us.
    ASSERT_EQ(m_session.tolvar({"resume"}).exitCode, 0);
    m_session.stop();
    ASSERT_TRUE(m_session.start({us, german, hangul}));
    EXPECT_TRUE(spinUntil([] { return Fcitx5Session::current() == german; }, 5000));
    Fcitx5Session::switchTo(hangul);
    EXPECT_TRUE(spinUntil([] { return Fcitx5Session::current() == german; }, 5000));
}

// How switches reach the backend and the background instance: from the addon
// while Fcitx5 has it, else by polls, and across a restart that adds or drops it.
struct FollowCase
{
    const char *name;
    bool addonFirst;
    bool addonThen;
};

class Fcitx5FollowTest : public Fcitx5Test, public testing::WithParamInterface<FollowCase>
{
protected:
    void SetUp() override
    {
        if (!QFileInfo::exists(TOLVAR_BUILD_DIR "/lib/fcitx5/libtolvar.so"))
            GTEST_SKIP() << "the addon is not built: libfcitx5core-dev is missing";
        Fcitx5Test::SetUp();
    }
    QByteArray addonBuild() const override { return GetParam().addonFirst ? TOLVAR_BUILD_DIR : QByteArray(); }

    // Whether the backend polls: its polls' timers are the context's only ones.
    static bool polling(const QObject &context)
    {
        const QList<QTimer *> timers = context.findChildren<QTimer *>();
        return std::any_of(timers.cbegin(), timers.cend(), [](const QTimer *timer) { return timer->isActive(); });
    }

    void expectFollowing(bool addon, const QObject &context, const int &heard)
    {
        SCOPED_TRACE(addon ? "with the addon" : "without the addon");
        EXPECT_EQ(Fcitx5Session::addonPresent(), addon);
        EXPECT_TRUE(spinUntil([&] { return polling(context) != addon; }, 5000));
        EXPECT_EQ(m_session.status()["following"].toString(), addon ? "signals" : "polling");
        // A poll sees only what is current at each look: let it look once first.
        if (!addon)
            spinUntil([] { return false; }, 600);
        const int before = heard;
        Fcitx5Session::switchTo(Fcitx5Session::current() == hangul ? us : hangul);
        EXPECT_TRUE(spinUntil([&] { return heard > before; }, 5000)) << qPrintable(Fcitx5Session::current());
        EXPECT_TRUE(m_session.keep(german, [] { return Fcitx5Session::current() == german; }));
        Fcitx5Session::switchTo(hangul);
        EXPECT_TRUE(spinUntil([] { return Fcitx5Session::current() == german; }, 5000));
        m_session.instance().kill();
        m_session.instance().waitForFinished();
    }
};

TEST_P(Fcitx5FollowTest, SeesSwitchesAndGroupChanges)
{
    const InputSources backend = Fcitx5InputSources::live();
    QObject context;
    int heard = 0;
    int groups = 0;
    ASSERT_TRUE(backend.observeSelected(&context, [&] { ++heard; }));
    ASSERT_TRUE(backend.observeEnabled(&context, [&] { ++groups; }));
    expectFollowing(GetParam().addonFirst, context, heard);
    // At rest nothing asks for the list again: stopped, Fcitx5 still has it told (its method too, with the addon).
    const StoppedStack stopped = StoppedStack::look(backend, m_session.program().processId());
    EXPECT_EQ(stopped.current, GetParam().addonFirst ? Fcitx5Session::current() : QString());
    EXPECT_EQ(stopped.enabled, (QStringList{us, german, hangul}));
    // Without the addon, a look at the group every 2 s tells.
    const int told = groups;
    Fcitx5Session::setGroup({us, german});
    EXPECT_TRUE(spinUntil([&] { return groups > told; }, 5000)) << "a changed group is told";
    qsizetype listed = 0;
    StoppedStack::inLoop([&] { listed = backend.enabled().size(); });
    EXPECT_EQ(listed, 2) << "a changed group is read again";
    if (!GetParam().addonFirst) { // paused, nothing looks at the group, so each read asks
        backend.needSelected(false);
        StoppedStack::inLoop([&] { backend.enabled(); });
        Fcitx5Session::setGroup({us});
        StoppedStack::inLoop([&] { listed = backend.enabled().size(); });
        EXPECT_EQ(listed, 1) << "paused, an edited group is read afresh";
        backend.needSelected(true);
    }
    m_session.stop();
    ASSERT_TRUE(m_session.start({us, german, hangul}, GetParam().addonThen ? TOLVAR_BUILD_DIR : QByteArray()));
    expectFollowing(GetParam().addonThen, context, heard);
}

INSTANTIATE_TEST_SUITE_P(Fcitx5, Fcitx5FollowTest,
                         testing::Values(FollowCase{"Addon", true, true}, FollowCase{"NoAddon", false, false},
                                         FollowCase{"AddonComesWithARestart", false, true},
                                         FollowCase{"AddonGoneAfterARestart", true, false}),
                         ParamName());

// A look answered before our own switch must not hide the next switch to what it saw.
TEST(Fcitx5PollTest, AnAnswerOlderThanOurOwnSwitchIsDropped)
{
    std::function<void(std::optional<QString>)> answer;
    int told = 0;
    Fcitx5Poll poll([&](QObject *, auto seen) { return answer = std::move(seen), true; }, [&] { ++told; }, 1h, nullptr);
    poll.setRunning(true);
    poll.setLast(german);
    answer(us);
    const int before = told;
    poll.setRunning(false);
    poll.setRunning(true);
    answer(us);
    EXPECT_EQ(told, before + 1) << "a switch to the old answer's method is told";
}

// Without a running fcitx5 nothing may start it, neither the choice nor a call.
class Fcitx5AbsentTest : public testing::TestWithParam<const char *>
{
};

TEST_P(Fcitx5AbsentTest, NotChosenAndNeverStarted)
{
    ASSERT_FALSE(Fcitx5Session::running());
    EXPECT_NE(LinuxInputBackend::choose(LinuxInputBackend::probe()), LinuxInputBackend::Kind::fcitx5);
    DesktopSession session;
    session.environment.insert("TOLVAR_INPUT_BACKEND", GetParam());
    for (const char *command : {"list", "status"})
        session.tolvar({command});
    EXPECT_FALSE(Fcitx5Session::running());
}

INSTANTIATE_TEST_SUITE_P(Fcitx5, Fcitx5AbsentTest, testing::Values("", "fcitx5"));

} // namespace
