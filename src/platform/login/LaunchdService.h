#pragma once

#include "platform/ServiceManager.h"

#include <QByteArray>
#include <QString>

// launchd, driven through /bin/launchctl: the agent "app.tolvar" in the
// user's login-session domain "gui/<user id>", defined by a property list in
// ~/Library/LaunchAgents. Pure logic, so it is built and tested everywhere.
namespace LaunchdService {

ServiceManager manager(const QString &homeDirectory, unsigned userId);

// The agent's XML property list, byte for byte as the system's own writer
// produces it (keys sorted, tab indentation).
QByteArray propertyList(const QString &executable);

// Reads the answer to "print-disabled <domain>".
ServiceManager::Mark readMark(const ServiceToolResult &answer);

} // namespace LaunchdService
