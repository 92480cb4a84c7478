#include "platform/ApplicationRole.h"

#include "platform/linux/X11Activation.h"

#include <QByteArray>

namespace ApplicationRole {

bool useOffscreenWithoutDisplay()
{
    if (!qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return false;
    qputenv("QT_QPA_PLATFORM", QByteArrayLiteral("offscreen"));
    return true;
}

// Tool windows stay out of the taskbar already, and the window manager decides
// about activation and stacking from the window's own flags.
void becomeAccessory() {}
void activateIgnoringOtherApps() {}
void raiseAboveEverything(quintptr) {}

void bringX11WindowForward(quintptr window)
{
    X11Activation::activate(static_cast<quint32>(window));
}

} // namespace ApplicationRole
