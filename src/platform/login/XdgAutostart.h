#pragma once

#include "platform/ServiceManager.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

// The login item as an XDG autostart entry, $XDG_CONFIG_HOME/autostart/app.tolvar.desktop.
// Every desktop that reads ~/.config/autostart starts it, whether or
// not its session reaches graphical-session.target; systemd-based sessions turn
// it into a unit themselves. No program is run: the entry's presence, without
// Hidden=true, is the whole state. Pure logic.
namespace XdgAutostart {

ServiceManager manager(const QString &configHome);

QByteArray entry(const QString &executable);

// The program an entry's Exec line starts, its quoting undone; empty when it names none.
QString program(const QString &entryText);

// Reads the entry's own text: disabled when it is hidden or switched off.
ServiceManager::Mark readMark(const ServiceToolResult &entryText);

} // namespace XdgAutostart
