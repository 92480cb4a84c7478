// The graphical instance's controller on a fake lock, bus and tray host, and
// where its drop-down goes next to a tray icon.
#include "app/AppController.h"
#include "app/AppModel.h"
#include "app/tray/DropDownPlacement.h"
#include "app/tray/TrayIcon.h"
#include "core/config/ConfigStore.h"
#include "core/engine/Enforcer.h"

#include "support/FakeAppWorld.h"
#include "support/FakeEnforcementWorld.h"
#include "support/ParamName.h"

#include <QCoreApplication>
#include <QMenu>
#include <QSystemTrayIcon>
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

    AppController &controller(Lock lock)
    {
        AppController::Dependencies dependencies;
        dependencies.acquireLock = [lock]() -> Expected<bool> {
            if (lock == Lock::Fails)
                return Error::posix(EACCES, QStringLiteral("/config/gui.lock"));
            return lock == Lock::Acquired;
        };
        dependencies.notifications.post = [this](const QString &name) { posted << name; };
        dependencies.notifications.observe = [this](const QString &name, QObject *, std::function<void()> callback) {
            observed.insert(name, std::move(callback));
            return true;
        };
        dependencies.alert = [this](const QString &message) { alerts << message; };
        dependencies.trayHost.whenPresent = [this](QObject *, std::function<void()> present) {
            trayAppears = std::move(present);
        };
        m_controller = std::make_unique<AppController>(m_model, std::move(dependencies));
        return *m_controller;
    }

    static bool shown(const QWidget *window) { return window && window->isVisible(); }

    FakeAppWorld world;
    FakeEnforcementWorld m_engineWorld;
    Enforcer m_enforcer{m_engineWorld.dependencies()};
    AppModel m_model{world.services(), &m_enforcer};
    std::unique_ptr<AppController> m_controller;
    QStringList posted;
    QStringList alerts;
    QHash<QString, std::function<void()>> observed;
    std::function<void()> trayAppears;
};

TEST_P(AppControllerTest, Launch)
{
    const LaunchCase &row = GetParam();
    AppController &instance = controller(row.lock);
    EXPECT_EQ(instance.launch(row.openWindow), row.launch);
    EXPECT_EQ(posted, row.posted ? QStringList{ConfigStore::openWindow} : QStringList{});
    EXPECT_EQ(alerts.size(), row.alerted ? 1 : 0);
    if (row.alerted) {
        EXPECT_TRUE(alerts.first().contains(QStringLiteral("gui.lock"))) << qPrintable(alerts.first());
    }
    EXPECT_EQ(shown(instance.window()), row.windowShown);
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

TEST_F(AppControllerTest, OpenFromOutsideBringsBackAClosedWindow)
{
    AppController &instance = controller(Lock::Acquired);
    ASSERT_EQ(instance.launch(false), AppController::Launch::Running);
    for (int round = 0; round < 2; ++round) {
        observed.value(ConfigStore::openWindow)();
        QCoreApplication::processEvents();
        ASSERT_TRUE(shown(instance.window()));
        instance.window()->close();
        EXPECT_FALSE(shown(instance.window()));
    }
}

// The icon waits for a tray, then follows the model; a click with no known icon place opens the window.
TEST_F(AppControllerTest, TrayIconComesWithTheTrayAndFollowsTheModel)
{
    AppController &instance = controller(Lock::Acquired);
    ASSERT_EQ(instance.launch(false), AppController::Launch::Running);
    EXPECT_EQ(instance.trayIcon(), nullptr);
    ASSERT_TRUE(trayAppears);
    trayAppears();
    ASSERT_NE(instance.trayIcon(), nullptr);
    const QString keeping = instance.trayIcon()->icon()->toolTip();
    EXPECT_TRUE(keeping.contains(QStringLiteral("English (US)"))) << qPrintable(keeping);

    m_model.setEnabled(false);
    QCoreApplication::processEvents();
    EXPECT_NE(instance.trayIcon()->icon()->toolTip(), keeping);
    EXPECT_EQ(instance.trayIcon()->icon()->toolTip(), TrayIcon::toolTip(m_model));

    instance.togglePanel(QRect());
    EXPECT_TRUE(shown(instance.window()));
    EXPECT_FALSE(shown(instance.dropDown()));
}

struct PlacementCase
{
    const char *name;
    QRect icon;
    QPoint topLeft;
};

class DropDownPlacementTest : public testing::TestWithParam<PlacementCase>
{
};

// A 1000 x 700 screen with a 30-pixel bar at the top or bottom; the panel is 300 x 400.
TEST_P(DropDownPlacementTest, StaysBesideTheIconAndOnTheScreen)
{
    const QRect available(0, 30, 1000, 640);
    EXPECT_EQ(DropDownPlacement::topLeft(GetParam().icon, QSize(300, 400), available), GetParam().topLeft);
}

INSTANTIATE_TEST_SUITE_P(
    Tray, DropDownPlacementTest,
    testing::Values(PlacementCase{"UnderATopBarIcon", QRect(490, 8, 20, 20), QPoint(350, 32)},
                    PlacementCase{"PushedInFromTheRightEdge", QRect(975, 8, 20, 20), QPoint(700, 32)},
                    PlacementCase{"PushedInFromTheLeftEdge", QRect(2, 8, 20, 20), QPoint(0, 32)},
                    PlacementCase{"OverABottomPanelIcon", QRect(490, 640, 20, 20), QPoint(350, 236)},
                    PlacementCase{"KeptOnScreenBesideATallIcon", QRect(0, 0, 20, 700), QPoint(0, 30)}),
    ParamName());

} // namespace
