#include "platform/linux/LinuxInputBackend.h"

#include <gtest/gtest.h>

namespace {

using LinuxInputBackend::Kind;

TEST(LinuxInputBackendTest, PicksTheStackThatOwnsTheKeyboard)
{
    // Requested backend, desktops, Fcitx5 running?, Plasma layouts?; then the choice.
    const std::pair<LinuxInputBackend::Session, Kind> rows[] = {
        {{}, Kind::ibus},
        {{"", {"KDE"}, true, true}, Kind::fcitx5},
        {{"", {"ubuntu", "GNOME"}, true, false}, Kind::fcitx5},
        {{"", {"KDE"}, false, true}, Kind::plasma},
        {{"", {"KDE"}, false, false}, Kind::ibus}, // one layout
        {{"", {"XFCE"}, false, true}, Kind::ibus}, // layouts outside KDE
        {{"plasma", {"GNOME"}, true, false}, Kind::plasma},
        {{"xim", {"KDE"}, true, true}, Kind::fcitx5}, // unknown request
    };
    for (const auto &[session, expected] : rows)
        EXPECT_EQ(LinuxInputBackend::choose(session), expected)
            << qPrintable(session.requested + "|" + session.desktops.join(':')) << session.fcitx5Running
            << session.plasmaLayouts;
}

} // namespace
