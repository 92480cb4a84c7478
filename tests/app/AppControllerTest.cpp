// The graphical instance's start on a lock it cannot take, and where its
// drop-down goes next to a tray icon.
#include "app/instance/AppController.h"
#include "app/model/AppModel.h"
#include "app/tray/DropDownPlacement.h"
#include "core/config/ConfigStore.h"

#include "support/FakeAppWorld.h"

#include <QWidget>

#include <gtest/gtest.h>

#include <cerrno>

namespace {

// The window, the hand-over to a running instance and the tray item are tested
// on the real executable; a lock that cannot be taken is not.
TEST(AppControllerTest, ALockFailureIsShownAndEndsTheInstance)
{
    FakeAppWorld world;
    AppModel model{world.services()};
    QStringList alerts;
    const auto unexpected = [](auto &&...) {
        ADD_FAILURE() << "an instance that ends neither posts, listens nor waits for a tray";
        return false;
    };
    AppController::Dependencies dependencies;
    dependencies.acquireLock = []() -> Expected<bool> { return Error::posix(EACCES, "/config/gui.lock"); };
    dependencies.notifications.post = unexpected;
    dependencies.notifications.observe = unexpected;
    dependencies.alert = [&](const QString &message) { alerts << message; };
    dependencies.trayHost.whenPresent = unexpected;
    AppController instance(model, std::move(dependencies));
    EXPECT_EQ(instance.launch(true), AppController::Launch::LockFailed);
    ASSERT_EQ(alerts.size(), 1);
    EXPECT_TRUE(alerts.first().contains("gui.lock")) << qPrintable(alerts.first());
    EXPECT_FALSE(instance.window() && instance.window()->isVisible());
    EXPECT_FALSE(world.calls.contains("load")) << "the model does not run";
}

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
