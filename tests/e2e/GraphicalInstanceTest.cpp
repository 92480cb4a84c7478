// The running instance on the private session's virtual X display, with the
// private IBus (xkb:us::eng, xkb:de::deu, hangul) and, where a case says so, a
// tray host on the private bus.
#include "core/config/ConfigStore.h"
#include "core/instance/InstanceLock.h"
#include "platform/AppPlaces.h"

#include "support/DesktopSession.h"
#include "support/FakeStatusNotifierWatcher.h"
#include "support/X11Windows.h"

#include <gtest/gtest.h>

namespace {

const QByteArray title = "Tolvar";
constexpr int waitMs = 10000;

class GraphicalInstanceTest : public testing::Test, protected DesktopSession
{
protected:
    void SetUp() override
    {
        if (!m_display.connected() || qEnvironmentVariableIsEmpty("TOLVAR_PRIVATE_SESSION"))
            GTEST_SKIP() << "needs the display and IBus of scripts/private-session --x11 --ibus";
        const Config pinned{QStringLiteral("xkb:de::deu"), true, std::nullopt, true};
        ASSERT_TRUE(ConfigStore::write(pinned, ConfigStore::directory()).ok());
    }

    void start(const QString &mode)
    {
        instance().setProcessChannelMode(QProcess::ForwardedErrorChannel);
        QProcessEnvironment xcb = environment;
        xcb.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        instance().setProcessEnvironment(xcb);
        instance().start(QStringLiteral(TOLVAR_EXECUTABLE), {mode});
        ASSERT_TRUE(instance().waitForStarted());
        ASSERT_TRUE(spinUntil(
            [] { return InstanceLock::isHeld(InstanceLock::fileIn(AppPlaces::sessionLockDirectory())).value(); },
            waitMs));
    }

    bool windows(qsizetype count) const
    {
        return spinUntil([&] { return m_display.shown(title).size() == count; }, waitMs);
    }

    X11Windows m_display;
};

// A second start brings the one window forward; "open" brings it back once closed.
TEST_F(GraphicalInstanceTest, ASecondStartOrOpenShowsTheOneWindow)
{
    start(QStringLiteral("gui"));
    ASSERT_TRUE(windows(1));
    const xcb_window_t window = m_display.shown(title).first();
    m_display.cover();
    ASSERT_TRUE(spinUntil([&] { return m_display.topmost() != window; }, waitMs));

    EXPECT_EQ(tolvar({"gui"}).exitCode, 0);
    EXPECT_TRUE(spinUntil([&] { return m_display.topmost() == window; }, waitMs));
    EXPECT_TRUE(spinUntil([&] { return m_display.focused() == window; }, waitMs));
    EXPECT_EQ(m_display.shown(title).size(), 1);

    m_display.close(window);
    ASSERT_TRUE(windows(0));
    EXPECT_EQ(instance().state(), QProcess::Running);

    EXPECT_EQ(tolvar({"open"}).exitCode, 0);
    EXPECT_TRUE(windows(1));
}

// The desktop's tray comes up after the instance, as at login. The item shows no
// window, a tooltip and icon that follow the pinned source, and a click opens the window.
TEST_F(GraphicalInstanceTest, TrayItemOfTheBackgroundInstance)
{
    start(QStringLiteral("background"));
    ASSERT_EQ(tolvar({"status"}).exitCode, 0);
    FakeStatusNotifierWatcher tray;
    ASSERT_TRUE(tray.own());
    ASSERT_TRUE(spinUntil([&] { return !tray.items().isEmpty(); }, waitMs));
    EXPECT_TRUE(m_display.shown(title).isEmpty());
    ASSERT_TRUE(spinUntil([&] { return tray.toolTip().contains(QStringLiteral("German")); }, waitMs))
        << qPrintable(tray.toolTip());
    const QByteArray german = tray.iconPixels();

    const ProcessResult pinned = tolvar({"set", "hangul"});
    ASSERT_EQ(pinned.exitCode, 0) << pinned.err.constData();
    EXPECT_TRUE(spinUntil([&] { return tray.toolTip().contains(QStringLiteral("Hangul")); }, waitMs))
        << qPrintable(tray.toolTip());
    EXPECT_TRUE(spinUntil([&] { return tray.iconPixels() != german; }, waitMs));

    ASSERT_TRUE(tray.activate());
    EXPECT_TRUE(windows(1));
}

} // namespace
