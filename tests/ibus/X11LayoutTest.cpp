// The X layout on a virtual X display, against the private session's IBus
// (scripts/private-session --x11 --ibus): IBus itself leaves it alone.
#include "platform/linux/x11/X11Layout.h"
#include "platform/linux/ibus/IBusAddress.h"

#include "support/DesktopSession.h"

#include <gtest/gtest.h>

namespace {

QString xLayout()
{
    return X11Layout::current().value_or(X11Layout::Names()).layout;
}

void keepSystemLayout(bool keep)
{
    runProcess("gsettings",
               {"set", "org.freedesktop.ibus.general", "use-system-keyboard-layout", keep ? "true" : "false"});
}

class X11LayoutTest : public testing::TestWithParam<std::pair<bool, const char *>>, protected DesktopSession
{
protected:
    void SetUp() override
    {
        if (IBusAddress::published().isEmpty() || !X11Layout::isX11Session())
            GTEST_SKIP() << "needs scripts/private-session --x11 --ibus";
        runProcess("setxkbmap", {"-layout", "us"});
        ASSERT_EQ(runProcess("ibus", {"engine", "xkb:us::eng"}).exitCode, 0);
    }

    void TearDown() override { keepSystemLayout(false); }

    QString reported() const { return status()["current"].toObject()["id"].toString(); }
};

TEST_P(X11LayoutTest, SetFollowsIBusSettingAndOutsideChanges)
{
    const auto [keepSystem, expected] = GetParam();
    keepSystemLayout(keepSystem);
    const ProcessResult set = tolvar({"set", "xkb:de::deu"});
    ASSERT_EQ(set.exitCode, 0) << set.err.constData();
    EXPECT_EQ(xLayout(), expected);
    EXPECT_EQ(reported(), "xkb:de::deu");
    // A layout replaced from outside takes the engine out of effect; an engine's options replace the earlier ones.
    runProcess("setxkbmap", {"-layout", "fr", "-option", "compose:ralt"});
    EXPECT_EQ(reported(), keepSystem ? "xkb:de::deu" : "");
    ASSERT_TRUE(X11Layout::apply({"de", "", "ctrl:nocaps"}));
    EXPECT_EQ(X11Layout::current().value_or(X11Layout::Names()).options, "ctrl:nocaps");
    runProcess("setxkbmap", {"-option", ""});
}

INSTANTIATE_TEST_SUITE_P(X11Layout, X11LayoutTest, testing::Values(std::pair{false, "de"}, std::pair{true, "us"}),
                         [](const auto &row) { return row.param.first ? "SystemLayoutKept" : "EngineLayoutSet"; });

// `ibus engine` runs its own setxkbmap after setting the engine: when the
// instance switches back first, the tool's late setxkbmap leaves the engine
// right and the layout wrong, which the instance must see and repair too.
TEST_F(X11LayoutTest, BackgroundInstanceBringsTheLayoutBack)
{
    ASSERT_EQ(tolvar({"set", "xkb:de::deu"}).exitCode, 0);
    ASSERT_EQ(tolvar({"resume"}).exitCode, 0);
    instance().start(TOLVAR_EXECUTABLE, {"background"});
    ASSERT_TRUE(instance().waitForStarted());
    for (int round = 0; round < 2; ++round) {
        ASSERT_EQ(runProcess("ibus", {"engine", "xkb:us::eng"}).exitCode, 0);
        EXPECT_TRUE(spinUntil([this] { return xLayout() == "de" && reported() == "xkb:de::deu"; }, 5000))
            << "round " << round << ": layout " << qPrintable(xLayout());
    }
}

} // namespace
