#include "core/instance/LaunchMode.h"
#include "platform/login/AppBundle.h"

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

TEST(AppBundleTest, DecidesFromThePath)
{
    using Row = std::tuple<QString, QString, QString>; // executable; then the bundle (empty: none), the resources
    for (const auto &[executable, bundle, resources] :
         {Row{"/Applications//Tolvar.app/Contents/MacOS/./Tolvar", "/Applications/Tolvar.app",
              "/Applications/Tolvar.app/Contents/Resources"},
          Row{"/src/build/bin/tolvar", "", "/src/build/share/tolvar"},
          Row{"/x/Tolvar.app/Contents/MacOS/bin/tolvar", "", "/x/Tolvar.app/Contents/MacOS/share/tolvar"},
          Row{"/x/Tolvar.APP/Contents/MacOS/Tolvar", "", "/x/Tolvar.APP/Contents/share/tolvar"}}) {
        SCOPED_TRACE(executable.toStdString());
        EXPECT_EQ(AppBundle::containing(executable).value_or(QString()), bundle);
        EXPECT_EQ(AppBundle::resourceDirectory(executable), resources);
        const std::optional<QStringList> open = AppBundle::openArguments(executable);
        ASSERT_EQ(open.has_value(), !bundle.isEmpty());
        // The bundle itself is started, never the bare executable.
        if (open) {
            EXPECT_EQ(open->mid(0, 2), QStringList({"-a", bundle}));
        }
    }
}

} // namespace
