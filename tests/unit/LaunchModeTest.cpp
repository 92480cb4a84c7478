#include "core/login/LaunchMode.h"

#include "support/ParamName.h"

#include <gtest/gtest.h>

namespace {

struct LaunchCase
{
    const char *name;
    QStringList arguments;
    bool fromDesktop;
    Launch expected;
};

using LaunchModeTest = testing::TestWithParam<LaunchCase>;

TEST_P(LaunchModeTest, Decides)
{
    EXPECT_EQ(decideLaunch(GetParam().arguments, GetParam().fromDesktop), GetParam().expected);
}

using enum LaunchMode;
const std::nullopt_t none = std::nullopt;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Entry, LaunchModeTest, testing::Values(
    LaunchCase{"EmptyFromDesktopOpensWindow", {}, true, {Window, none}},
    LaunchCase{"EmptyFromShellIsCommandLine", {}, false, {CommandLine, none}},
    LaunchCase{"GuiIgnoresFurtherWords", {"gui", "extra"}, false, {Window, none}},
    LaunchCase{"Background", {"background"}, true, {Background, none}},
    LaunchCase{"FocusAlone", {"focus"}, false, {FocusHelper, none}},
    LaunchCase{"FocusTakesOnlyTheIdentifier", {"focus", "hangul", "--automatic", "x"}, false, {FocusHelper, "hangul"}},
    LaunchCase{"FocusWithEmptyIdentifier", {"focus", ""}, false, {FocusHelper, ""}},
    LaunchCase{"CapitalisedFocusIsCommandLine", {"Focus"}, false, {CommandLine, none}},
    LaunchCase{"ModeWordNotFirstIsCommandLine", {"status", "gui"}, false, {CommandLine, none}},
    LaunchCase{"CommandFromDesktopIsStillCommandLine", {"status"}, true, {CommandLine, none}}),
    ParamName());
// clang-format on

TEST(DesktopLauncherTest, MatchesTheLastPathComponentExactly)
{
    const QStringList launchers = {"launchd", "open", "Finder", "Dock"};
    for (const char *parent :
         {"/sbin/launchd", "/System/Library/CoreServices/Finder.app/Contents/MacOS/Finder", "Dock"})
        EXPECT_TRUE(isDesktopLauncher(parent, launchers)) << parent;
    for (const char *parent : {"/bin/zsh", "/System/Dock.app/Contents/MacOS/dock", "/usr/bin/opener", ""})
        EXPECT_FALSE(isDesktopLauncher(parent, launchers)) << parent;
}

} // namespace
