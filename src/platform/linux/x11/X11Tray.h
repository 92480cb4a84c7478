#pragma once

#include <QByteArray>

#include <optional>

#include <xcb/xcb.h>

// The XEmbed tray protocol's way of saying a tray runs: an owner of the
// screen's tray selection.
namespace X11Tray {

// The selection's name ("_NET_SYSTEM_TRAY_S0") while it has an owner.
std::optional<QByteArray> ownedSelection(xcb_connection_t *connection, int screen);

} // namespace X11Tray
