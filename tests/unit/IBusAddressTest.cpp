#include "platform/linux/IBusAddress.h"

#include <gtest/gtest.h>

namespace {

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
