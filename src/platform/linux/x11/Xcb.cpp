#include "platform/linux/x11/Xcb.h"

#include <QLibrary>

#include <optional>

namespace {

std::optional<Xcb> load()
{
    QLibrary library(QStringLiteral("xcb"), 1);
    if (!library.load())
        return std::nullopt;
    bool complete = true;
    const auto resolve = [&](auto &function, const char *name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(library.resolve(name));
        complete = complete && function;
    };
    Xcb x{};
    resolve(x.connect, "xcb_connect");
    resolve(x.connectionHasError, "xcb_connection_has_error");
    resolve(x.disconnect, "xcb_disconnect");
    resolve(x.flush, "xcb_flush");
    resolve(x.getFileDescriptor, "xcb_get_file_descriptor");
    resolve(x.getSetup, "xcb_get_setup");
    resolve(x.setupRootsIterator, "xcb_setup_roots_iterator");
    resolve(x.screenNext, "xcb_screen_next");
    resolve(x.internAtom, "xcb_intern_atom");
    resolve(x.internAtomReply, "xcb_intern_atom_reply");
    resolve(x.getProperty, "xcb_get_property");
    resolve(x.getPropertyReply, "xcb_get_property_reply");
    resolve(x.getPropertyValue, "xcb_get_property_value");
    resolve(x.getPropertyValueLength, "xcb_get_property_value_length");
    resolve(x.changeWindowAttributes, "xcb_change_window_attributes");
    resolve(x.pollForEvent, "xcb_poll_for_event");
    resolve(x.waitForEvent, "xcb_wait_for_event");
    resolve(x.generateId, "xcb_generate_id");
    resolve(x.createWindow, "xcb_create_window");
    resolve(x.destroyWindow, "xcb_destroy_window");
    resolve(x.changeProperty, "xcb_change_property");
    resolve(x.configureWindow, "xcb_configure_window");
    resolve(x.setInputFocus, "xcb_set_input_focus");
    resolve(x.sendEvent, "xcb_send_event");
    resolve(x.getSelectionOwner, "xcb_get_selection_owner");
    resolve(x.getSelectionOwnerReply, "xcb_get_selection_owner_reply");
    // Never unloaded: its connections live to the end of the process.
    if (!complete)
        return std::nullopt;
    return x;
}

} // namespace

const Xcb *Xcb::library()
{
    static const std::optional<Xcb> loaded = load();
    return loaded ? &*loaded : nullptr;
}
