#pragma once

#include "platform/ServiceManager.h"

#include <QByteArray>
#include <QString>

// systemd's per-user instance, driven through `systemctl --user`: the unit
// "app.tolvar.service" in the user's unit folder, started with the desktop
// session. Pure logic apart from the program it names.
namespace SystemdService {

// An absolute $XDG_CONFIG_HOME, otherwise home + ".config".
QString configHome(const QString &homeDirectory, const QString &xdgConfigHome);

ServiceManager manager(const QString &configHome);

QByteArray unit(const QString &executable);

// Reads the answer to "is-enabled app.tolvar.service".
ServiceManager::Mark readMark(const ServiceToolResult &answer);

} // namespace SystemdService
