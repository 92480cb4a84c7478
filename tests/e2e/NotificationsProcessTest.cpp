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

// Each observer hears its own name once, on the main thread, and only while its
// context lives; a mutation in another process announces itself.
TEST_F(NotificationsProcessTest, NamesDoNotCrossAndObservingEndsWithTheContext)
{
    QTemporaryDir home;
    QObject context;
    QStringList seen;
    bool onMainThread = true;
    for (const QString &name : {ConfigStore::changed, ConfigStore::openWindow})
        ASSERT_TRUE(Notifications::live().observe(name, &context, [&seen, &onMainThread, name] {
            seen << name;
            onMainThread = onMainThread && QThread::currentThread() == QCoreApplication::instance()->thread();
        }));
    {
        QObject gone;
        ASSERT_TRUE(Notifications::live().observe(ConfigStore::openWindow, &gone, [&seen] { seen << "gone"; }));
    }

    EXPECT_EQ(runProcess(worker, {QStringLiteral("post"), ConfigStore::openWindow}).exitCode, 0);
    ASSERT_TRUE(spinUntil([&] { return !seen.isEmpty(); }, 10000));
    const ProcessResult mutation =
        runProcess(worker, {QStringLiteral("mutate-announced"), home.path(), QStringLiteral("x")});
    ASSERT_EQ(mutation.exitCode, 0) << mutation.err.constData();
    ASSERT_TRUE(spinUntil([&] { return seen.size() > 1; }, 10000));
    spinUntil([] { return false; }, 200); // anything misrouted or repeated would arrive by now
    EXPECT_EQ(seen, (QStringList{ConfigStore::openWindow, ConfigStore::changed}));
    EXPECT_TRUE(onMainThread);
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
