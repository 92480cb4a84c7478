#include "platform/linux/LinuxKeyboardSettings.h"

#include <gtest/gtest.h>

namespace {

using Command = LinuxKeyboardSettings::Command;

TEST(LinuxKeyboardSettingsTest, OpensTheDesktopsOwnPlace)
{
    const Command gnome{"gnome-control-center", {"keyboard"}};
    const Command kde{"systemsettings", {"kcm_keyboard"}};
    const Command ibus{"ibus-setup", {}};
    const QStringList all{"gnome-control-center", "systemsettings", "ibus-setup"};
    using Row = std::tuple<QStringList, QStringList, std::optional<Command>>; // desktops, installed; then the command
    for (const auto &[desktops, installed, expected] :
         {Row{{"ubuntu", "GNOME"}, all, gnome}, Row{{"KDE"}, all, kde}, Row{{"XFCE"}, all, ibus},
          Row{{"GNOME"}, {"ibus-setup"}, ibus}, Row{{"GNOME"}, {}, std::nullopt}})
        EXPECT_EQ(LinuxKeyboardSettings::choose(desktops, [&](const QString &p) { return installed.contains(p); }),
                  expected)
            << qPrintable(desktops.join(':') + " with " + installed.join(' '));
}

} // namespace
