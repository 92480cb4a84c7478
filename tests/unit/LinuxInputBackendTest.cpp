#include "platform/linux/LinuxInputBackend.h"

#include "support/ParamName.h"

#include <gtest/gtest.h>

namespace {

using LinuxInputBackend::Kind;

struct ChooseCase
{
    const char *name;
    LinuxInputBackend::Session session;
    Kind expected;
};

using LinuxInputBackendChooseTest = testing::TestWithParam<ChooseCase>;

TEST_P(LinuxInputBackendChooseTest, PicksTheStackThatOwnsTheKeyboard)
{
    EXPECT_EQ(LinuxInputBackend::choose(GetParam().session), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    LinuxInputBackend, LinuxInputBackendChooseTest,
    testing::Values(ChooseCase{"NothingKnownIsIBus", {}, Kind::ibus},
                    ChooseCase{"Fcitx5WinsOverKDE", {"", {"KDE"}, true, true}, Kind::fcitx5},
                    ChooseCase{"Fcitx5WinsOverGNOME", {"", {"ubuntu", "GNOME"}, true, false}, Kind::fcitx5},
                    ChooseCase{"KDEWithLayouts", {"", {"KDE"}, false, true}, Kind::plasma},
                    ChooseCase{"KDEWithOneLayoutIsIBus", {"", {"KDE"}, false, false}, Kind::ibus},
                    ChooseCase{"LayoutsOutsideKDEAreIgnored", {"", {"XFCE"}, false, true}, Kind::ibus},
                    ChooseCase{"RequestWins", {"plasma", {"GNOME"}, true, false}, Kind::plasma},
                    ChooseCase{"UnknownRequestIsIgnored", {"xim", {"KDE"}, true, true}, Kind::fcitx5}),
    ParamName());

} // namespace
