#include "core/config/ConfigStore.h"
#include "platform/Notifications.h"
#include "support/Process.h"
#include "support/Spin.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace {

const QString worker = QStringLiteral(TOLVAR_WORKER);

class NotificationsProcessTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
            GTEST_SKIP() << "needs the private session bus of scripts/private-session";
    }
};

TEST_F(NotificationsProcessTest, MutationInAnotherProcessIsAnnouncedOnTheMainThread)
{
    QTemporaryDir home;
    QObject context;
    int deliveries = 0;
    bool onMainThread = false;
    ASSERT_TRUE(Notifications::live().observe(ConfigStore::changed, &context, [&] {
        ++deliveries;
        onMainThread = QThread::currentThread() == QCoreApplication::instance()->thread();
    }));
    const ProcessResult mutation =
        runProcess(worker, {QStringLiteral("mutate-announced"), home.path(), QStringLiteral("x")});
    ASSERT_EQ(mutation.exitCode, 0) << mutation.err.constData();
    EXPECT_TRUE(spinUntil([&] { return deliveries > 0; }, 10000));
    EXPECT_EQ(deliveries, 1);
    EXPECT_TRUE(onMainThread);
}

// Each observer hears its own name, and only while its context lives.
TEST_F(NotificationsProcessTest, NamesDoNotCrossAndObservingEndsWithTheContext)
{
    QObject context;
    QStringList seen;
    for (const QString &name : {ConfigStore::changed, ConfigStore::openWindow})
        ASSERT_TRUE(Notifications::live().observe(name, &context, [&seen, name] { seen << name; }));
    {
        QObject gone;
        ASSERT_TRUE(Notifications::live().observe(ConfigStore::openWindow, &gone, [&seen] { seen << "gone"; }));
    }

    EXPECT_EQ(runProcess(worker, {QStringLiteral("post"), ConfigStore::openWindow}).exitCode, 0);
    ASSERT_TRUE(spinUntil([&] { return !seen.isEmpty(); }, 10000));
    spinUntil([] { return false; }, 200); // anything misrouted would arrive by now
    EXPECT_EQ(seen, QStringList{ConfigStore::openWindow});
}

TEST(NotificationsWithoutBusTest, PostingIsHarmlessAndObservingUnavailable)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QTemporaryDir nowhere;
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                       QStringLiteral("unix:path=") + nowhere.filePath(QStringLiteral("no-bus")));
    environment.remove(QStringLiteral("DISPLAY"));
    const ProcessResult result = runProcess(worker, {QStringLiteral("without-bus")}, environment, 10000);
    ASSERT_TRUE(result.finished) << "blocked without a bus";
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_EQ(result.out.trimmed(), QByteArray("unavailable"));
}

} // namespace
