// The X layout on a virtual X display, against the private session's IBus
// (scripts/private-session --x11 --ibus): IBus itself leaves it alone.
#include "platform/linux/x11/X11Layout.h"
#include "platform/linux/ibus/IBusAddress.h"

#include "support/DesktopSession.h"

#include <QFile>

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

    void TearDown() override
    {
        keepSystemLayout(false);
        runProcess("setxkbmap", {"-layout", "us"});
    }

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

// `ibus engine` runs its own setxkbmap after setting the engine: when the instance switches back first, the
// tool's late setxkbmap leaves the engine right and the layout wrong, which the instance must see and repair too.
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

// A Plasma X11 session that does not type through IBus and has no org.kde.keyboard, as from Plasma 6.8:
// tolvar sets the X layout itself, one layout of kxkbrc at a time, and says so.
TEST_F(X11LayoutTest, PlasmaWithoutItsKeyboardServiceSetsTheServerLayout)
{
    environment.insert("XDG_CURRENT_DESKTOP", "KDE");
    environment.insert("XDG_SESSION_TYPE", "x11");
    environment.insert("LANGUAGE", "en");
    for (const char *name : {"TOLVAR_INPUT_BACKEND", "GTK_IM_MODULE", "QT_IM_MODULE", "XMODIFIERS"})
        environment.remove(name);
    QFile kxkbrc(qEnvironmentVariable("XDG_CONFIG_HOME") + "/kxkbrc");
    ASSERT_TRUE(kxkbrc.open(QIODevice::WriteOnly));
    kxkbrc.write("[Layout]\nLayoutList=us,de,de\nVariantList=,,neo\nUse=true\n");
    kxkbrc.close();
    EXPECT_EQ(status()["backend"].toString(), "x11");
    EXPECT_TRUE(tolvar({"status"}).out.contains("Tolvar sets the X keyboard layout itself"));
    EXPECT_EQ(listed(), (QStringList{"us", "de", "de(neo)"}));
    const ProcessResult set = tolvar({"set", "de(neo)"});
    EXPECT_EQ(set.exitCode, 0) << set.err.constData();
    EXPECT_EQ(X11Layout::current().value_or(X11Layout::Names()), (X11Layout::Names{"de", "neo", ""}));
    EXPECT_EQ(reported(), "de(neo)");
    // Plasma's own keymap holds every layout as a group: which one is active is not in the names.
    runProcess("setxkbmap", {"-layout", "us,de"});
    EXPECT_EQ(reported(), "");
    kxkbrc.remove();
}

} // namespace
