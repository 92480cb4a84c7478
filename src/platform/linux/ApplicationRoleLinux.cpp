#include "platform/ApplicationRole.h"

#include "platform/linux/dbus/BusProbe.h"
#include "platform/linux/dbus/DBusBuses.h"
#include "platform/linux/x11/X11Activation.h"

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

void avoidSilentSessionBus()
{
    // QtDBus connects without a time limit, and Qt's accessibility bridge asks
    // for the session bus on the first label drawn. An address of no known
    // transport makes every such request fail at once.
    if (!DBusBuses::session() && !BusProbe::sessionAddress().isEmpty())
        qputenv("DBUS_SESSION_BUS_ADDRESS", QByteArrayLiteral("disabled:"));
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
