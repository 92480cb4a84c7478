#pragma once

#include <QtGlobal>

namespace X11Activation {

// Raises a shown top-level window of the X display and gives it the keyboard
// focus, stamped with the server's time now. A toolkit stamps such requests with
// the last event it saw, which is older than another client's focus change when
// the request comes from another process (a second start); the server, or a
// window manager, then ignores it.
void activate(quint32 window);

} // namespace X11Activation
