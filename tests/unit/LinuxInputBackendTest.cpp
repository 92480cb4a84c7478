#include "platform/linux/input/LinuxInputBackend.h"
#include "platform/linux/gnome/GnomeInputSources.h"
#include "platform/linux/ibus/IBusAddress.h"

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
        // Plasma on X11: its keyboard service (gone from Plasma 6.8), or the X server's layout.
        {{"", {"KDE"}, false, true, true, false, true}, Kind::plasma},
        {{"", {"KDE"}, false, false, true, false, true}, Kind::x11},
        {{"", {"KDE"}, false, false, true, false, true, true}, Kind::ibus}, // types through IBus
        {{"", {"XFCE"}, false, false, true, false, true}, Kind::ibus},
        {{"x11", {"GNOME"}, false, false, true, false, false}, Kind::x11},
    };
    for (const auto &[session, expected] : rows)
        EXPECT_EQ(LinuxInputBackend::choose(session), expected)
            << qPrintable(session.requested + "|" + session.desktops.join(':')) << session.fcitx5Running
            << session.plasmaLayouts << session.busAnswers << session.x11Session << session.typesThroughIBus;
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

const QString id = QStringLiteral("3d1219c7c4c5404aaa1f6d2a48adfda4");
const QString bus = QStringLiteral("/home/u/.config/ibus/bus/");

IBusAddress::Session session(const QString &display, const QString &wayland = {})
{
    return {QString(), QStringLiteral("/home/u/.config"), id, display, wayland};
}

QStringList files(std::initializer_list<const char *> suffixes)
{
    QStringList out;
    for (const char *suffix : suffixes)
        out << bus + id + QLatin1String(suffix);
    return out;
}

// Names as ibus-daemon 1.5.27 wrote them for each environment.
TEST(IBusAddressTest, NamesTheFilesIBusWrites)
{
    // clang-format off
    const std::pair<IBusAddress::Session, QStringList> rows[] = {
        {session({}), files({"-unix-0"})},
        {session(":7.1"), files({"-unix-7"})},
        {session("somehost:3.0"), files({"-somehost-3"})},
        {session(":2", "wayland-1"), files({"-unix-wayland-1", "-unix-2"})},
        {session(":2", "/run/user/1000/wayland-0"), files({"-unix-2"})},
        {session("garbage"), {}},
        {{"/tmp/address", "/home/u/.config", id, ":7", {}}, {"/tmp/address"}},
        {{QString(), "/home/u/.config", QString(), {}, {}}, {}},
        {{QString(), QString(), id, {}, {}}, {}}};
    // clang-format on
    for (size_t row = 0; row < std::size(rows); ++row)
        EXPECT_EQ(IBusAddress::files(rows[row].first), rows[row].second) << "row " << row;
}

TEST(IBusAddressTest, ReadsTheAddressLine)
{
    using Row = std::pair<QByteArray, QString>;
    for (const auto &[contents, expected] :
         {Row{"# This file is created by ibus-daemon, please do not modify it.\n"
              "IBUS_ADDRESS=unix:abstract=/tmp/dbus-x,guid=751691b9\nIBUS_DAEMON_PID=12039\n",
              "unix:abstract=/tmp/dbus-x,guid=751691b9"},
          Row{"IBUS_ADDRESS=unix:path=/tmp/s", "unix:path=/tmp/s"},
          Row{"# IBUS_ADDRESS=old\nIBUS_DAEMON_PID=1\n", QString()}})
        EXPECT_EQ(IBusAddress::parse(contents), expected) << contents.constData();
}

} // namespace
