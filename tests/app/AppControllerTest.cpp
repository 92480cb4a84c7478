// How the graphical instance starts on a fake lock and bus, and where its
// drop-down goes next to a tray icon. The window and the tray item themselves
// are tested on the real executable.
#include "app/AppController.h"
#include "app/AppModel.h"
#include "app/tray/DropDownPlacement.h"
#include "core/config/ConfigStore.h"
#include "core/engine/Enforcer.h"

#include "support/FakeAppWorld.h"
#include "support/FakeEnforcementWorld.h"
#include "support/ParamName.h"

#include <QThreadPool>
#include <QWidget>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

enum class Lock { Acquired, HeldElsewhere, Fails };

struct LaunchCase
{
    const char *name;
    Lock lock;
    bool openWindow;
    AppController::Launch launch;
    bool posted;
    bool alerted;
    bool windowShown;
};

class AppControllerTest : public testing::TestWithParam<LaunchCase>
{
protected:
    void TearDown() override { QThreadPool::globalInstance()->waitForDone(); }

    FakeAppWorld world;
    FakeEnforcementWorld m_engineWorld;
    Enforcer m_enforcer{m_engineWorld.dependencies()};
    AppModel m_model{world.services(), &m_enforcer};
};

TEST_P(AppControllerTest, Launch)
{
    const LaunchCase &row = GetParam();
    QStringList posted;
    QStringList alerts;
    QStringList observed;
    AppController::Dependencies dependencies;
    dependencies.acquireLock = [&row]() -> Expected<bool> {
        if (row.lock == Lock::Fails)
            return Error::posix(EACCES, QStringLiteral("/config/gui.lock"));
        return row.lock == Lock::Acquired;
    };
    dependencies.notifications.post = [&](const QString &name) { posted << name; };
    dependencies.notifications.observe = [&](const QString &name, QObject *, std::function<void()>) {
        observed << name;
        return true;
    };
    dependencies.alert = [&](const QString &message) { alerts << message; };
    dependencies.trayHost.whenPresent = [](QObject *, std::function<void()>) {};
    AppController instance(m_model, std::move(dependencies));

    EXPECT_EQ(instance.launch(row.openWindow), row.launch);
    EXPECT_EQ(posted, row.posted ? QStringList{ConfigStore::openWindow} : QStringList{});
    EXPECT_EQ(alerts.size(), row.alerted ? 1 : 0);
    EXPECT_TRUE(!row.alerted || alerts.value(0).contains(QStringLiteral("gui.lock"))) << qPrintable(alerts.value(0));
    EXPECT_EQ(instance.window() && instance.window()->isVisible(), row.windowShown);
    // Only the one instance listens for others and runs the model.
    const bool running = row.launch == AppController::Launch::Running;
    EXPECT_EQ(observed.contains(ConfigStore::openWindow), running);
    EXPECT_EQ(world.calls.contains(QStringLiteral("load")), running);
}

INSTANTIATE_TEST_SUITE_P(
    AppController, AppControllerTest,
    testing::Values(
        LaunchCase{"WindowMode", Lock::Acquired, true, AppController::Launch::Running, false, false, true},
        LaunchCase{"BackgroundMode", Lock::Acquired, false, AppController::Launch::Running, false, false, false},
        LaunchCase{"SecondInstance", Lock::HeldElsewhere, true, AppController::Launch::HandedOver, true, false, false},
        LaunchCase{"LockFailure", Lock::Fails, true, AppController::Launch::LockFailed, false, true, false}),
    ParamName());

// A 1000 x 700 screen with a 30-pixel bar at the top or bottom; the panel is 300 x 400.
TEST(DropDownPlacementTest, StaysBesideTheIconAndOnTheScreen)
{
    const struct
    {
        const char *name;
        QRect icon;
        QPoint topLeft;
    } rows[] = {{"under a top bar icon", QRect(490, 8, 20, 20), QPoint(350, 32)},
                {"pushed in from the right edge", QRect(975, 8, 20, 20), QPoint(700, 32)},
                {"pushed in from the left edge", QRect(2, 8, 20, 20), QPoint(0, 32)},
                {"over a bottom panel icon", QRect(490, 640, 20, 20), QPoint(350, 236)},
                {"kept on screen beside a tall icon", QRect(0, 0, 20, 700), QPoint(0, 30)}};
    for (const auto &row : rows)
        EXPECT_EQ(DropDownPlacement::topLeft(row.icon, QSize(300, 400), QRect(0, 30, 1000, 640)), row.topLeft)
            << row.name;
}

} // namespace
