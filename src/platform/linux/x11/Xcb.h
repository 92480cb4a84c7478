#pragma once

#include <xcb/xcb.h>

// The few libxcb calls the X layout, window activation and the tray check need, loaded on first use:
// most commands never talk to an X server and should not pay for loading its client library.
struct Xcb
{
    decltype(&xcb_connect) connect;
    decltype(&xcb_connection_has_error) connectionHasError;
    decltype(&xcb_disconnect) disconnect;
    decltype(&xcb_flush) flush;
    decltype(&xcb_get_file_descriptor) getFileDescriptor;
    decltype(&xcb_get_setup) getSetup;
    decltype(&xcb_setup_roots_iterator) setupRootsIterator;
    decltype(&xcb_screen_next) screenNext;
    decltype(&xcb_intern_atom) internAtom;
    decltype(&xcb_intern_atom_reply) internAtomReply;
    decltype(&xcb_get_property) getProperty;
    decltype(&xcb_get_property_reply) getPropertyReply;
    decltype(&xcb_get_property_value) getPropertyValue;
    decltype(&xcb_get_property_value_length) getPropertyValueLength;
    decltype(&xcb_change_window_attributes) changeWindowAttributes;
    decltype(&xcb_poll_for_event) pollForEvent;
    decltype(&xcb_wait_for_event) waitForEvent;
    decltype(&xcb_generate_id) generateId;
    decltype(&xcb_create_window) createWindow;
    decltype(&xcb_destroy_window) destroyWindow;
    decltype(&xcb_change_property) changeProperty;
    decltype(&xcb_configure_window) configureWindow;
    decltype(&xcb_set_input_focus) setInputFocus;
    decltype(&xcb_send_event) sendEvent;
    decltype(&xcb_get_selection_owner) getSelectionOwner;
    decltype(&xcb_get_selection_owner_reply) getSelectionOwnerReply;

    // The library's calls; none when libxcb cannot be loaded.
    static const Xcb *library();
};
