#include "platform/linux/IBusAddress.h"

#include "support/ParamName.h"

#include <gtest/gtest.h>

namespace {

const QString id = QStringLiteral("3d1219c7c4c5404aaa1f6d2a48adfda4");
const QString bus = QStringLiteral("/home/u/.config/ibus/bus/");

struct FilesCase
{
    const char *name;
    IBusAddress::Session session;
    QStringList expected;
};

using IBusAddressFilesTest = testing::TestWithParam<FilesCase>;

TEST_P(IBusAddressFilesTest, NamesTheFilesIBusWrites)
{
    EXPECT_EQ(IBusAddress::files(GetParam().session), GetParam().expected);
}

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
// clang-format off
INSTANTIATE_TEST_SUITE_P(IBusAddress, IBusAddressFilesTest, testing::Values(
    FilesCase{"NoDisplay", session({}), files({"-unix-0"})},
    FilesCase{"ScreenIsIgnored", session(":7.1"), files({"-unix-7"})},
    FilesCase{"RemoteDisplay", session("somehost:3.0"), files({"-somehost-3"})},
    FilesCase{"WaylandBeforeXWayland", session(":2", "wayland-1"), files({"-unix-wayland-1", "-unix-2"})},
    FilesCase{"WaylandSocketPathIsNotAName", session(":2", "/run/user/1000/wayland-0"), files({"-unix-2"})},
    FilesCase{"DisplayWithoutNumber", session("garbage"), {}},
    FilesCase{"ExplicitFileWins", {"/tmp/address", "/home/u/.config", id, ":7", {}}, {"/tmp/address"}},
    FilesCase{"NoMachineId", {QString(), "/home/u/.config", QString(), {}, {}}, {}},
    FilesCase{"NoConfigHome", {QString(), QString(), id, {}, {}}, {}}),
    ParamName());
// clang-format on

TEST(IBusAddressTest, ReadsTheAddressLine)
{
    using Row = std::pair<QByteArray, QString>;
    for (const auto &[contents, expected] :
         {Row{"# This file is created by ibus-daemon, please do not modify it.\n"
              "IBUS_ADDRESS=unix:abstract=/tmp/dbus-x,guid=751691b9\nIBUS_DAEMON_PID=12039\n",
              "unix:abstract=/tmp/dbus-x,guid=751691b9"},
          Row{"IBUS_ADDRESS=unix:path=/tmp/s", "unix:path=/tmp/s"},
          Row{"# IBUS_ADDRESS=old\nIBUS_ADDRESS=new\n", "new"}, Row{"IBUS_DAEMON_PID=1\n", QString()}})
        EXPECT_EQ(IBusAddress::parse(contents), expected) << contents.constData();
}

} // namespace
