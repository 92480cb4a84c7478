#pragma once

#include "platform/input/InputSources.h"

// Keyboard layouts as KDE Plasma switches them (KWin on Wayland, a Plasma
// module on X11), through org.kde.KeyboardLayouts on the session bus.
//
// Plasma names a layout by its index, which changes when the list does, so a
// source's identifier is the layout's short name with its variant, as the
// user's keyboard settings give it: "de", "de(neo)".
//
// With one layout configured Plasma offers no service at all. Then that layout,
// as the settings name it, is the only source and always current: there is
// nothing to keep, and nothing fails.
namespace PlasmaInputSources {

// Layouts from the session bus, with the user's keyboard settings read from `kxkbrc`.
InputSources at(const QString &kxkbrc);
InputSources live();

} // namespace PlasmaInputSources
