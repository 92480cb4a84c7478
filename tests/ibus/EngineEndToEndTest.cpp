// The engine on live wiring, in its own process, against the private session's
// ibus-daemon (engines xkb:us::eng, xkb:de::deu and hangul).
#include "core/config/ConfigStore.h"
#include "platform/InputSources.h"
#include "platform/linux/IBusAddress.h"

#include "support/Process.h"
#include "support/Spin.h"

#include <QDir>
#include <QFile>
#include <QThread>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString us = "xkb:us::eng";
const QString german = "xkb:de::deu";
const QString hangul = "hangul";

class EngineEndToEndTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (IBusAddress::published().isEmpty())
            GTEST_SKIP() << "needs the private IBus of scripts/private-session --ibus";
    }

    void TearDown() override
    {
        if (m_host) {
            m_host->kill();
            m_host->waitForFinished();
        }
    }

    void pin(const QString &id, bool enabled)
    {
        ASSERT_TRUE(ConfigStore::write(Config{id, enabled, std::nullopt, true}, ConfigStore::directory()).ok());
    }

    void startEngine()
    {
        m_host = std::make_unique<QProcess>();
        m_host->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_host->start(QStringLiteral(TOLVAR_ENGINE_HOST), QStringList());
        ASSERT_TRUE(m_host->waitForReadyRead(10000));
        ASSERT_EQ(m_host->readLine().trimmed(), QByteArray("ready"));
    }

    // As a person or another program would: through IBus's own command.
    static void switchFromOutside(const QString &id)
    {
        // It reports failure here after the switch, when it cannot reach X to set the layout.
        runProcess(QStringLiteral("ibus"), {QStringLiteral("engine"), id});
    }

    bool becomes(const QString &id, int timeoutMs)
    {
        return spinUntil([&] { return m_system.currentID() == id; }, timeoutMs);
    }

    InputSources m_system = InputSources::live();
    std::unique_ptr<QProcess> m_host;
};

TEST_F(EngineEndToEndTest, PinnedLayoutComesBack)
{
    pin(german, true);
    startEngine();
    ASSERT_TRUE(becomes(german, 5000)) << "the engine should select the pinned layout at start";
    for (int i = 0; i < 3; ++i) {
        switchFromOutside(us);
        EXPECT_TRUE(becomes(german, 5000)) << "round " << i;
    }
}

// IBus applies every engine at once: no focus helper, so no three-second spacing either.
TEST_F(EngineEndToEndTest, PinnedHangulComesBackDirectly)
{
    pin(hangul, true);
    startEngine();
    ASSERT_TRUE(becomes(hangul, 10000));
    for (int round = 0; round < 2; ++round) {
        switchFromOutside(german);
        EXPECT_TRUE(becomes(hangul, 5000)) << "round " << round;
    }
    EXPECT_FALSE(QFile::exists(QDir::home().filePath("focus-helper-runs")));
}

TEST_F(EngineEndToEndTest, NothingComesBackWhilePaused)
{
    pin(german, false);
    startEngine();
    switchFromOutside(us);
    ASSERT_TRUE(becomes(us, 2000));
    // Longer than one tick of the engine's timer.
    spinUntil([] { return false; }, 2600);
    EXPECT_EQ(m_system.currentID(), us);
}

TEST_F(EngineEndToEndTest, PinningAnotherSourceSwitchesAtOnce)
{
    pin(us, true);
    startEngine();
    ASSERT_TRUE(becomes(us, 5000));
    const Expected<Config> written =
        ConfigStore::mutate(ConfigStore::directory(), [](Config &config) -> Expected<void> {
            config.sourceID = german;
            return {};
        });
    ASSERT_TRUE(written.ok());
    EXPECT_TRUE(becomes(german, 1500)) << "the change notice should trigger well before the next tick";
}

} // namespace
