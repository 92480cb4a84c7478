#include "platform/linux/LinuxKeyboardSettings.h"

#include "support/ParamName.h"

#include <gtest/gtest.h>

namespace {

using Command = LinuxKeyboardSettings::Command;

const Command gnome{QStringLiteral("gnome-control-center"), {QStringLiteral("keyboard")}};
const Command kde{QStringLiteral("systemsettings"), {QStringLiteral("kcm_keyboard")}};
const Command ibus{QStringLiteral("ibus-setup"), {}};

struct Case
{
    const char *name;
    QStringList desktops;
    QStringList installed;
    std::optional<Command> expected;
};

using LinuxKeyboardSettingsTest = testing::TestWithParam<Case>;

TEST_P(LinuxKeyboardSettingsTest, OpensTheDesktopsOwnPlace)
{
    const Case &row = GetParam();
    const auto installed = [&row](const QString &program) { return row.installed.contains(program); };
    EXPECT_EQ(LinuxKeyboardSettings::choose(row.desktops, installed), row.expected);
}

const QStringList all{QStringLiteral("gnome-control-center"), QStringLiteral("systemsettings"),
                      QStringLiteral("ibus-setup")};

INSTANTIATE_TEST_SUITE_P(Desktops, LinuxKeyboardSettingsTest,
                         testing::Values(Case{"Gnome", {QStringLiteral("ubuntu"), QStringLiteral("GNOME")}, all, gnome},
                                         Case{"Kde", {QStringLiteral("KDE")}, all, kde},
                                         Case{"OtherDesktopUsesIBus", {QStringLiteral("XFCE")}, all, ibus},
                                         Case{"GnomeWithoutItsSettingsUsesIBus",
                                              {QStringLiteral("GNOME")},
                                              {QStringLiteral("ibus-setup")},
                                              ibus},
                                         Case{"NothingInstalled", {QStringLiteral("GNOME")}, {}, std::nullopt}),
                         ParamName());

} // namespace
