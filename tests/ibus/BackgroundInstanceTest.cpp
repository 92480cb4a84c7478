// `tolvar background`, as the login item starts it, against the private
// session's ibus-daemon (xkb:us::eng selected, xkb:de::deu, hangul).
#include "core/config/ConfigStore.h"
#include "platform/InputSources.h"
#include "platform/Notifications.h"
#include "platform/linux/IBusAddress.h"

#include "support/Process.h"
#include "support/Spin.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString executable = TOLVAR_EXECUTABLE;
const QString us = "xkb:us::eng";
const QString german = "xkb:de::deu";

class BackgroundInstanceTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (IBusAddress::published().isEmpty())
            GTEST_SKIP() << "needs the private IBus of scripts/private-session --ibus";
        ASSERT_TRUE(ConfigStore::write(Config{german, true, std::nullopt, true}, ConfigStore::directory()).ok());
    }

    void TearDown() override
    {
        if (m_instance) {
            m_instance->kill();
            m_instance->waitForFinished();
        }
    }

    void startInstance()
    {
        m_instance = std::make_unique<QProcess>();
        m_instance->start(executable, {"background"});
        ASSERT_TRUE(m_instance->waitForStarted());
        ASSERT_TRUE(spinUntil([] { return state() == "keeping"; }, 10000)) << "state " << qPrintable(state());
    }

    static QString state()
    {
        const ProcessResult result = runProcess(executable, {"status", "--json"});
        return QJsonDocument::fromJson(result.out).object()["status"].toObject()["state"].toString();
    }

    InputSources m_system = InputSources::live();
    std::unique_ptr<QProcess> m_instance;
};

TEST_F(BackgroundInstanceTest, SecondLaunchHandsOverAndEnds)
{
    startInstance();
    const ProcessResult second =
        runProcess(executable, {"background"}, QProcessEnvironment::systemEnvironment(), 10000);
    EXPECT_TRUE(second.finished);
    EXPECT_EQ(second.exitCode, 0);
    EXPECT_EQ(m_instance->state(), QProcess::Running);
}

// The started "gui" finds the instance running, asks it to show itself and ends.
TEST_F(BackgroundInstanceTest, OpenReachesTheRunningInstance)
{
    startInstance();
    QObject context;
    bool asked = false;
    ASSERT_TRUE(Notifications::live().observe(ConfigStore::openWindow, &context, [&] { asked = true; }));
    const ProcessResult opened = runProcess(executable, {"open", "--json"});
    EXPECT_EQ(opened.exitCode, 0) << opened.out.constData();
    EXPECT_EQ(QJsonDocument::fromJson(opened.out).object()["command"].toString(), "open");
    // Once it has handed over it ends; a test that stopped sooner could leave it to take the lock.
    EXPECT_TRUE(spinUntil([&] { return asked; }, 10000));
    EXPECT_EQ(m_instance->state(), QProcess::Running);
}

TEST_F(BackgroundInstanceTest, KilledInstanceLeavesNothingBehind)
{
    startInstance();
    m_instance->kill();
    m_instance->waitForFinished();
    EXPECT_EQ(state(), "stopped");
    startInstance();
}

TEST_F(BackgroundInstanceTest, KeepsThePinnedSourceUntilPaused)
{
    startInstance();
    EXPECT_EQ(m_system.currentID(), german);
    ASSERT_EQ(m_system.select(us), 0);
    EXPECT_TRUE(spinUntil([&] { return m_system.currentID() == german; }, 5000));

    ASSERT_EQ(runProcess(executable, {"pause"}).exitCode, 0);
    EXPECT_EQ(state(), "paused");
    ASSERT_EQ(m_system.select(us), 0);
    spinUntil([] { return false; }, 2600); // past the next tick
    EXPECT_EQ(m_system.currentID(), us);
    ASSERT_EQ(runProcess(executable, {"resume"}).exitCode, 0);
    EXPECT_TRUE(spinUntil([&] { return m_system.currentID() == german; }, 3000));

    // Each set races the instance following the same new pin; neither may fail the other.
    for (int i = 0; i < 20; ++i) {
        const ProcessResult set = runProcess(executable, {"set", i % 2 ? german : "hangul"});
        ASSERT_EQ(set.exitCode, 0) << i << ": " << set.err.constData();
    }
}

} // namespace
