#pragma once

#include "platform/input/InputSources.h"

// A Plasma X11 session without org.kde.keyboard, which plasma-desktop's
// keyboard daemon served until Plasma 6.8: the layouts of `kxkbrc`, set on the
// X server one at a time with setxkbmap, as IBus's tools set an engine's
// layout on X11. The current source is the server's layout while it names a
// single one; with several (Plasma's own keymap, switched by group), which
// group is active cannot be told from the names, and none is current.
namespace X11ServerInputSources {

InputSources at(const QString &kxkbrc);
InputSources live();

} // namespace X11ServerInputSources
