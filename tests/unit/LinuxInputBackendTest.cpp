#include "platform/linux/LinuxInputBackend.h"
#include "platform/linux/GnomeInputSources.h"

#include <gtest/gtest.h>

#include <optional>
#include <tuple>

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

TEST(GnomeInputSourcesTest, TellsWhyTheExtensionDoesNotRun)
{
    using A = InputSources::Availability;
    // The shell's state for the extension (none: unknown to it), files installed?; then why.
    const std::tuple<std::optional<double>, bool, A> rows[] = {
        {std::nullopt, false, A::extensionMissing},
        {std::nullopt, true, A::extensionPending},
        {6.0, true, A::extensionOff},
        {2.0, true, A::extensionOff},
        {4.0, true, A::extensionOutdated},
        {3.0, true, A::extensionFailed},
        {1.0, true, A::extensionFailed},
        {99.0, false, A::extensionMissing},
    };
    for (const auto &[state, installed, expected] : rows) {
        QVariantMap info{{"uuid", "input-sources@tolvar.app"}};
        if (state)
            info.insert("state", *state);
        EXPECT_EQ(GnomeInputSources::whyNotRunning(info, installed), expected) << state.value_or(-1) << installed;
    }
}

} // namespace
