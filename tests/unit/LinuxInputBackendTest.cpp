#include "platform/linux/LinuxInputBackend.h"

#include <gtest/gtest.h>

namespace {

using LinuxInputBackend::Kind;

TEST(LinuxInputBackendTest, PicksTheStackThatOwnsTheKeyboard)
{
    // Requested backend, desktops, Fcitx5 running?, Plasma layouts?, bus answers?, Fcitx named?; then the choice.
    const std::pair<LinuxInputBackend::Session, Kind> rows[] = {
        {{}, Kind::ibus},
        {{"", {"KDE"}, true, true}, Kind::fcitx5},
        {{"", {"ubuntu", "GNOME"}, true, false}, Kind::fcitx5},
        {{"", {"KDE"}, false, true}, Kind::plasma},
        {{"", {"KDE"}, false, false}, Kind::ibus}, // one layout
        {{"", {"XFCE"}, false, true}, Kind::ibus}, // layouts outside KDE
        {{"plasma", {"GNOME"}, true, false}, Kind::plasma},
        {{"xim", {"KDE"}, true, true}, Kind::fcitx5},              // unknown request
        {{"", {"KDE"}, false, false, false}, Kind::plasma},        // no bus to ask
        {{"", {"XFCE"}, false, false, false, true}, Kind::fcitx5}, // no bus to ask
        {{"", {"GNOME"}, false, false, true, true}, Kind::gnome},  // named, not running
    };
    for (const auto &[session, expected] : rows)
        EXPECT_EQ(LinuxInputBackend::choose(session), expected)
            << qPrintable(session.requested + "|" + session.desktops.join(':')) << session.fcitx5Running
            << session.plasmaLayouts << session.busAnswers;
}

} // namespace
