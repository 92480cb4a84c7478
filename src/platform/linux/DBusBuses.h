#pragma once

#include <QDBusConnection>

#include <optional>

// The session and system buses, each knocked at once per process before QtDBus
// connects to it: none when the bus is missing or does not answer, so that no
// caller waits on a bus that never will.
namespace DBusBuses {

std::optional<QDBusConnection> session();
std::optional<QDBusConnection> system();

} // namespace DBusBuses
