#include "core/login/LaunchMode.h"

#include <gtest/gtest.h>

namespace {

using enum LaunchMode;

TEST(LaunchModeTest, Decides)
{
    const std::nullopt_t none = std::nullopt;
    using Row = std::tuple<QStringList, bool, Launch>; // arguments, started from the desktop?; then the launch
    for (const auto &[arguments, fromDesktop, expected] :
         {Row{{}, true, {Window, none}}, Row{{}, false, {CommandLine, none}},
          Row{{"gui", "extra"}, false, {Window, none}}, Row{{"background"}, true, {Background, none}},
          Row{{"focus"}, false, {FocusHelper, none}},
          Row{{"focus", "hangul", "--automatic", "x"}, false, {FocusHelper, "hangul"}},
          Row{{"focus", ""}, false, {FocusHelper, ""}}, Row{{"Focus"}, false, {CommandLine, none}},
          Row{{"status", "gui"}, false, {CommandLine, none}}, Row{{"status"}, true, {CommandLine, none}}})
        EXPECT_EQ(decideLaunch(arguments, fromDesktop), expected) << qPrintable(arguments.join(' ')) << fromDesktop;
}

TEST(LaunchModeTest, DesktopLauncherMatchesTheLastPathComponentExactly)
{
    const QStringList launchers = {"launchd", "open", "Finder", "Dock"};
    for (const char *parent :
         {"/sbin/launchd", "/System/Library/CoreServices/Finder.app/Contents/MacOS/Finder", "Dock"})
        EXPECT_TRUE(isDesktopLauncher(parent, launchers)) << parent;
    for (const char *parent : {"/bin/zsh", "/System/Dock.app/Contents/MacOS/dock", "/usr/bin/opener", ""})
        EXPECT_FALSE(isDesktopLauncher(parent, launchers)) << parent;
}

} // namespace
