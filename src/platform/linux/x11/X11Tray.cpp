#include "platform/linux/x11/X11Tray.h"

#include "platform/linux/x11/Xcb.h"

#include <cstdlib>
#include <memory>

namespace X11Tray {

std::optional<QByteArray> ownedSelection(xcb_connection_t *connection, int screen)
{
    const Xcb *x = Xcb::library();
    if (!x || !connection)
        return std::nullopt;
    const QByteArray name = "_NET_SYSTEM_TRAY_S" + QByteArray::number(screen);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        x->internAtomReply(connection, x->internAtom(connection, 1, name.size(), name.constData()), nullptr),
        &std::free);
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return std::nullopt;
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner(
        x->getSelectionOwnerReply(connection, x->getSelectionOwner(connection, atom->atom), nullptr), &std::free);
    if (!owner || owner->owner == XCB_NONE)
        return std::nullopt;
    return name;
}

} // namespace X11Tray
