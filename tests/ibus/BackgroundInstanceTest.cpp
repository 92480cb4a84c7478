// `tolvar background`, as the login item starts it, against the private
// session's ibus-daemon (xkb:us::eng selected, xkb:de::deu, hangul).
#include "core/config/ConfigStore.h"
#include "platform/Notifications.h"
#include "platform/input/InputSources.h"
#include "platform/linux/ibus/IBusAddress.h"

#include "support/DesktopSession.h"

#include <gtest/gtest.h>

namespace {

const QString us = "xkb:us::eng";
const QString german = "xkb:de::deu";
const QString hangul = "hangul";

class BackgroundInstanceTest : public testing::Test, protected DesktopSession
{
protected:
    void SetUp() override
    {
        if (IBusAddress::published().isEmpty())
            GTEST_SKIP() << "needs the private IBus of scripts/private-session --ibus";
    }

    void keepPinned(const QString &id = german)
    {
        ASSERT_TRUE(keep(id, [this] { return state() == "keeping"; })) << "state " << qPrintable(state());
    }

    QString state() const { return status()["state"].toString(); }

    bool becomes(const QString &id, int timeoutMs) const
    {
        return spinUntil([&] { return m_system.currentID() == id; }, timeoutMs);
    }

    InputSources m_system = InputSources::live();
};

class BackgroundComeBackTest : public BackgroundInstanceTest,
                               public testing::WithParamInterface<std::pair<QString, QString>>
{
};

// IBus applies every engine at once, Hangul included.
TEST_P(BackgroundComeBackTest, PinnedSourceComesBackAfterAnOutsideSwitch)
{
    const auto &[pinned, elsewhere] = GetParam();
    keepPinned(pinned);
    ASSERT_TRUE(becomes(pinned, 10000)) << "the pinned source is selected at start";
    for (int round = 0; round < 2; ++round) {
        // As a person or another program would; it fails afterwards for want of X, which is beside the point.
        runProcess("ibus", {"engine", elsewhere});
        EXPECT_TRUE(becomes(pinned, 5000)) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(Background, BackgroundComeBackTest,
                         testing::Values(std::pair{german, us}, std::pair{hangul, german}),
                         [](const auto &row) { return row.param.first == hangul ? "Hangul" : "Layout"; });

TEST_F(BackgroundInstanceTest, KeepsThePinnedSourceUntilPaused)
{
    keepPinned();
    ASSERT_EQ(tolvar({"pause"}).exitCode, 0);
    EXPECT_EQ(state(), "paused");
    ASSERT_EQ(m_system.select(us), 0);
    spinUntil([] { return false; }, 2600); // past the next tick
    EXPECT_EQ(m_system.currentID(), us);
    ASSERT_EQ(tolvar({"resume"}).exitCode, 0);
    EXPECT_TRUE(becomes(german, 3000));

    // Each set races the instance following the same new pin; neither may fail the other.
    for (int i = 0; i < 20; ++i) {
        const ProcessResult set = tolvar({"set", i % 2 ? german : hangul});
        ASSERT_EQ(set.exitCode, 0) << i << ": " << set.err.constData();
    }
}

TEST_F(BackgroundInstanceTest, PinningAnotherSourceSwitchesAtOnce)
{
    keepPinned();
    const Expected<Config> written =
        ConfigStore::mutate(ConfigStore::directory(), [](Config &config) -> Expected<void> {
            config.sourceID = us;
            return {};
        });
    ASSERT_TRUE(written.ok());
    EXPECT_TRUE(becomes(us, 1500)) << "the change notice should trigger well before the next tick";
}

// A second launch hands over and ends; "open" asks the instance to show itself
// and ends; a killed instance leaves no lock behind.
TEST_F(BackgroundInstanceTest, OneInstanceAtATime)
{
    keepPinned();
    const ProcessResult second = tolvar({"background"}, 10000);
    EXPECT_TRUE(second.finished);
    EXPECT_EQ(second.exitCode, 0);

    QObject context;
    bool asked = false;
    ASSERT_TRUE(Notifications::live().observe(ConfigStore::openWindow, &context, [&] { asked = true; }));
    const ProcessResult opened = tolvar({"open", "--json"});
    EXPECT_EQ(opened.exitCode, 0) << opened.out.constData();
    EXPECT_EQ(json(opened)["command"].toString(), "open");
    EXPECT_TRUE(spinUntil([&] { return asked; }, 10000));
    EXPECT_EQ(instance().state(), QProcess::Running);

    instance().kill();
    instance().waitForFinished();
    EXPECT_EQ(state(), "stopped");
    keepPinned();
}

} // namespace
