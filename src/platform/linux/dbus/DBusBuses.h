#pragma once

#include <QDBusConnection>
#include <QDBusMessage>

#include "platform/input/StackReport.h"

#include <optional>

// The session and system buses, each knocked at once per process before QtDBus
// connects to it: none when the bus is missing or does not answer, so that no
// caller waits on a bus that never will. Nothing else asks QtDBus for them.
namespace DBusBuses {

std::optional<QDBusConnection> session();
std::optional<QDBusConnection> system();
// `message` on the session bus, waiting at most `timeoutMs`; a Disconnected
// error at once when there is no session bus to ask.
QDBusMessage callSession(const QDBusMessage &message, int timeoutMs);
// Whether `name` has an owner on the session bus; false when it cannot be told.
bool sessionHas(const QString &name, int timeoutMs = 1000);
// Whether the service a reply came from was there and answered in time; any
// answer counts, an error among them.
StackReport::Reach reachOf(const QDBusMessage &reply);

} // namespace DBusBuses
