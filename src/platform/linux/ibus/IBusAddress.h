#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// Where the session's IBus daemon listens. IBus publishes its D-Bus address in
// IBUS_ADDRESS, or in a file named after the machine and the display.
namespace IBusAddress {

struct Session
{
    QString addressFile;    // $IBUS_ADDRESS_FILE
    QString configHome;     // $XDG_CONFIG_HOME, else ~/.config
    QString machineId;      // /etc/machine-id
    QString display;        // $DISPLAY
    QString waylandDisplay; // $WAYLAND_DISPLAY
};

// The address files IBus may have written for this session, the likeliest first.
QStringList files(const Session &session);
// The IBUS_ADDRESS value written in an address file; empty when there is none.
QString parse(const QByteArray &contents);
// The session as the environment describes it.
Session currentSession();
// IBUS_ADDRESS when set, else the address in the session's address file; empty
// when IBus has published none.
QString published();

} // namespace IBusAddress
