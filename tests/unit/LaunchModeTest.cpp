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

class LaunchModeTest : public testing::TestWithParam<LaunchCase>
{
};

TEST_P(LaunchModeTest, Decides)
{
    EXPECT_EQ(decideLaunch(GetParam().arguments, GetParam().fromDesktop), GetParam().expected);
}

const QString id = QStringLiteral("hangul");

INSTANTIATE_TEST_SUITE_P(
    Entry, LaunchModeTest,
    testing::Values(
        LaunchCase{"EmptyFromDesktopOpensWindow", {}, true, {LaunchMode::Window, std::nullopt}},
        LaunchCase{"EmptyFromShellIsCommandLine", {}, false, {LaunchMode::CommandLine, std::nullopt}},
        LaunchCase{"Gui", {QStringLiteral("gui")}, false, {LaunchMode::Window, std::nullopt}},
        LaunchCase{"GuiIgnoresFurtherWords",
                   {QStringLiteral("gui"), QStringLiteral("extra")},
                   false,
                   {LaunchMode::Window, std::nullopt}},
        LaunchCase{"Background", {QStringLiteral("background")}, true, {LaunchMode::Background, std::nullopt}},
        LaunchCase{"FocusAlone", {QStringLiteral("focus")}, false, {LaunchMode::FocusHelper, std::nullopt}},
        LaunchCase{"FocusWithIdentifier", {QStringLiteral("focus"), id}, false, {LaunchMode::FocusHelper, id}},
        LaunchCase{"FocusTakesOnlyTheIdentifier",
                   {QStringLiteral("focus"), id, QStringLiteral("--automatic"), QStringLiteral("x")},
                   false,
                   {LaunchMode::FocusHelper, id}},
        LaunchCase{"FocusWithEmptyIdentifier",
                   {QStringLiteral("focus"), QString()},
                   false,
                   {LaunchMode::FocusHelper, QString()}},
        LaunchCase{
            "CapitalisedFocusIsCommandLine", {QStringLiteral("Focus")}, false, {LaunchMode::CommandLine, std::nullopt}},
        LaunchCase{"ModeWordNotFirstIsCommandLine",
                   {QStringLiteral("status"), QStringLiteral("gui")},
                   false,
                   {LaunchMode::CommandLine, std::nullopt}},
        LaunchCase{"CommandFromDesktopIsStillCommandLine",
                   {QStringLiteral("status")},
                   true,
                   {LaunchMode::CommandLine, std::nullopt}}),
    ParamName());

struct LauncherCase
{
    const char *name;
    QString parent;
    bool expected;
};

class DesktopLauncherTest : public testing::TestWithParam<LauncherCase>
{
};

TEST_P(DesktopLauncherTest, MatchesTheLastPathComponentExactly)
{
    const QStringList launchers = {QStringLiteral("launchd"), QStringLiteral("open"), QStringLiteral("Finder"),
                                   QStringLiteral("Dock")};
    EXPECT_EQ(isDesktopLauncher(GetParam().parent, launchers), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Entry, DesktopLauncherTest,
    testing::Values(LauncherCase{"Launchd", QStringLiteral("/sbin/launchd"), true},
                    LauncherCase{"Finder",
                                 QStringLiteral("/System/Library/CoreServices/Finder.app/Contents/MacOS/Finder"), true},
                    LauncherCase{"Open", QStringLiteral("/usr/bin/open"), true},
                    LauncherCase{"Shell", QStringLiteral("/bin/zsh"), false},
                    LauncherCase{"OtherCase", QStringLiteral("/System/Dock.app/Contents/MacOS/dock"), false},
                    LauncherCase{"Prefix", QStringLiteral("/usr/bin/opener"), false},
                    LauncherCase{"BareName", QStringLiteral("Dock"), true}, LauncherCase{"Unknown", QString(), false}),
    ParamName());

} // namespace
