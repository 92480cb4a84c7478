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

class IBusAddressFilesTest : public testing::TestWithParam<FilesCase>
{
};

TEST_P(IBusAddressFilesTest, NamesTheFilesIBusWrites)
{
    EXPECT_EQ(IBusAddress::files(GetParam().session), GetParam().expected);
}

IBusAddress::Session session(const QString &display, const QString &wayland = {})
{
    return {QString(), QStringLiteral("/home/u/.config"), id, display, wayland};
}

// Names as ibus-daemon 1.5.27 wrote them for each environment.
INSTANTIATE_TEST_SUITE_P(
    IBusAddress, IBusAddressFilesTest,
    testing::Values(
        FilesCase{"NoDisplay", session({}), {bus + id + QStringLiteral("-unix-0")}},
        FilesCase{"LocalDisplay", session(QStringLiteral(":7")), {bus + id + QStringLiteral("-unix-7")}},
        FilesCase{"ScreenIsIgnored", session(QStringLiteral(":7.1")), {bus + id + QStringLiteral("-unix-7")}},
        FilesCase{"RemoteDisplay", session(QStringLiteral("somehost:3.0")), {bus + id + QStringLiteral("-somehost-3")}},
        FilesCase{"Wayland", session({}, QStringLiteral("wayland-1")), {bus + id + QStringLiteral("-unix-wayland-1")}},
        FilesCase{"WaylandBeforeXWayland",
                  session(QStringLiteral(":2"), QStringLiteral("wayland-1")),
                  {bus + id + QStringLiteral("-unix-wayland-1"), bus + id + QStringLiteral("-unix-2")}},
        FilesCase{"WaylandSocketPathIsNotAName",
                  session(QStringLiteral(":2"), QStringLiteral("/run/user/1000/wayland-0")),
                  {bus + id + QStringLiteral("-unix-2")}},
        FilesCase{"DisplayWithoutNumber", session(QStringLiteral("garbage")), {}},
        FilesCase{"ExplicitFileWins",
                  {QStringLiteral("/tmp/address"), QStringLiteral("/home/u/.config"), id, QStringLiteral(":7"), {}},
                  {QStringLiteral("/tmp/address")}},
        FilesCase{"NoMachineId", {QString(), QStringLiteral("/home/u/.config"), QString(), {}, {}}, {}},
        FilesCase{"NoConfigHome", {QString(), QString(), id, {}, {}}, {}}),
    ParamName());

struct ParseCase
{
    const char *name;
    QByteArray contents;
    QString expected;
};

class IBusAddressParseTest : public testing::TestWithParam<ParseCase>
{
};

TEST_P(IBusAddressParseTest, ReadsTheAddressLine)
{
    EXPECT_EQ(IBusAddress::parse(GetParam().contents), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(IBusAddress, IBusAddressParseTest,
                         testing::Values(ParseCase{"AsWrittenByTheDaemon",
                                                   "# This file is created by ibus-daemon, please do not modify it.\n"
                                                   "# If the IBUS_ADDRESS environment variable is set, it will\n"
                                                   "# be used rather than this file.\n"
                                                   "IBUS_ADDRESS=unix:abstract=/tmp/dbus-x,guid=751691b9\n"
                                                   "IBUS_DAEMON_PID=12039\n",
                                                   QStringLiteral("unix:abstract=/tmp/dbus-x,guid=751691b9")},
                                         ParseCase{"WithoutTrailingNewline", "IBUS_ADDRESS=unix:path=/tmp/s",
                                                   QStringLiteral("unix:path=/tmp/s")},
                                         ParseCase{"CommentMentioningTheKeyIsSkipped",
                                                   "# IBUS_ADDRESS=old\nIBUS_ADDRESS=new\n", QStringLiteral("new")},
                                         ParseCase{"NoAddressLine", "IBUS_DAEMON_PID=1\n", QString()},
                                         ParseCase{"EmptyFile", "", QString()}),
                         ParamName());

} // namespace
