#include "platform/linux/x11/X11Activation.h"

#include "platform/linux/x11/Xcb.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace X11Activation {
namespace {

struct FreeReply
{
    void operator()(void *reply) const { std::free(reply); }
};

template <typename Reply> using ReplyPointer = std::unique_ptr<Reply, FreeReply>;

xcb_atom_t atom(const Xcb &x, xcb_connection_t *connection, const char *name)
{
    const ReplyPointer<xcb_intern_atom_reply_t> reply(
        x.internAtomReply(connection, x.internAtom(connection, 0, std::strlen(name), name), nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

// The server's time, from the notice of a change to a property of a window of our own.
xcb_timestamp_t serverTime(const Xcb &x, xcb_connection_t *connection, xcb_window_t root)
{
    const xcb_window_t probe = x.generateId(connection);
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    x.createWindow(connection, XCB_COPY_FROM_PARENT, probe, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                   XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    x.changeProperty(connection, XCB_PROP_MODE_APPEND, probe, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    x.flush(connection);
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    while (xcb_generic_event_t *event = x.waitForEvent(connection)) {
        const bool notice = (event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY;
        if (notice)
            time = reinterpret_cast<xcb_property_notify_event_t *>(event)->time;
        std::free(event);
        if (notice)
            break;
    }
    x.destroyWindow(connection, probe);
    return time;
}

bool managerSupports(const Xcb &x, xcb_connection_t *connection, xcb_window_t root, xcb_atom_t wanted)
{
    const ReplyPointer<xcb_get_property_reply_t> supported(x.getPropertyReply(
        connection, x.getProperty(connection, 0, root, atom(x, connection, "_NET_SUPPORTED"), XCB_ATOM_ATOM, 0, 4096),
        nullptr));
    if (!supported)
        return false;
    const auto *atoms = static_cast<const xcb_atom_t *>(x.getPropertyValue(supported.get()));
    const int count = x.getPropertyValueLength(supported.get()) / int(sizeof(xcb_atom_t));
    return std::find(atoms, atoms + count, wanted) != atoms + count;
}

} // namespace

void activate(quint32 window)
{
    const Xcb *x = Xcb::library();
    if (!x)
        return;
    int screen = 0;
    xcb_connection_t *connection = x->connect(nullptr, &screen);
    xcb_screen_iterator_t roots = x->setupRootsIterator(x->getSetup(connection));
    for (int i = 0; i < screen && roots.rem > 0; ++i)
        x->screenNext(&roots);
    if (x->connectionHasError(connection) || roots.rem <= 0) {
        x->disconnect(connection);
        return;
    }
    const xcb_window_t root = roots.data->root;
    const xcb_timestamp_t now = serverTime(*x, connection, root);
    const xcb_atom_t activeWindow = atom(*x, connection, "_NET_ACTIVE_WINDOW");
    if (managerSupports(*x, connection, root, activeWindow)) {
        // Asked as the application itself, so the manager's own rules still apply.
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = activeWindow;
        event.data.data32[0] = 1;
        event.data.data32[1] = now;
        x->sendEvent(connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                     reinterpret_cast<const char *>(&event));
    } else {
        const uint32_t above = XCB_STACK_MODE_ABOVE;
        x->configureWindow(connection, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        x->setInputFocus(connection, XCB_INPUT_FOCUS_PARENT, window, now);
    }
    x->flush(connection);
    x->disconnect(connection);
}

} // namespace X11Activation
