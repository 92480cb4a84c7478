#pragma once

#include <QtGlobal>

// How a windowed process presents itself to the desktop.
namespace ApplicationRole {

// Picks Qt's offscreen platform when there is no display to draw on, so the
// windowed roles also run on a headless machine. Call before the application object.
// True when it did: nothing this process shows can be seen.
bool useOffscreenWithoutDisplay();
// Keeps Qt's own clients of the session bus (accessibility, the platform theme)
// off one that does not answer, which they would wait on for ever. Call before
// the application object.
void avoidSilentSessionBus();
// No taskbar or Dock entry and no menu bar.
void becomeAccessory();
// Takes keyboard focus even while another application is active.
void activateIgnoringOtherApps();
// Above everything, on every workspace, for the focus helper's tiny window.
void raiseAboveEverything(quintptr window);
// Brings a shown window of the X11 platform to the front with the keyboard focus,
// at the user's request made through another process, as a second start is.
void bringX11WindowForward(quintptr window);

} // namespace ApplicationRole
