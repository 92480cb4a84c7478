#include "support/X11Windows.h"

#include <cstdlib>
#include <memory>

namespace {

template <typename T> using Reply = std::unique_ptr<T, decltype(&std::free)>;
template <typename T> Reply<T> reply(T *value)
{
    return Reply<T>(value, &std::free);
}

} // namespace

X11Windows::X11Windows()
    : m_connection(xcb_connect(nullptr, nullptr))
{
    if (connected())
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
}

X11Windows::~X11Windows()
{
    xcb_disconnect(m_connection);
}

xcb_atom_t X11Windows::atom(const QByteArray &name) const
{
    const auto answer = reply(
        xcb_intern_atom_reply(m_connection, xcb_intern_atom(m_connection, 0, name.size(), name.constData()), nullptr));
    return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

QList<xcb_window_t> X11Windows::stack() const
{
    QList<xcb_window_t> windows;
    const auto tree = reply(xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_root), nullptr));
    if (!tree)
        return windows;
    const xcb_window_t *children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const auto attributes = reply(xcb_get_window_attributes_reply(
            m_connection, xcb_get_window_attributes(m_connection, children[i]), nullptr));
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE)
            windows << children[i];
    }
    return windows;
}

QByteArray X11Windows::title(xcb_window_t window) const
{
    const auto property = reply(xcb_get_property_reply(
        m_connection,
        xcb_get_property(m_connection, 0, window, atom("_NET_WM_NAME"), XCB_GET_PROPERTY_TYPE_ANY, 0, 256), nullptr));
    if (!property)
        return {};
    return QByteArray(static_cast<const char *>(xcb_get_property_value(property.get())),
                      xcb_get_property_value_length(property.get()));
}

QList<xcb_window_t> X11Windows::shown(const QByteArray &wanted) const
{
    QList<xcb_window_t> windows;
    for (const xcb_window_t window : stack())
        if (title(window) == wanted)
            windows << window;
    return windows;
}

xcb_window_t X11Windows::topmost() const
{
    const QList<xcb_window_t> windows = stack();
    return windows.isEmpty() ? static_cast<xcb_window_t>(XCB_WINDOW_NONE) : windows.last();
}

xcb_window_t X11Windows::focused() const
{
    const auto focus = reply(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    return focus ? focus->focus : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

void X11Windows::close(xcb_window_t window) const
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom("WM_PROTOCOLS");
    event.data.data32[0] = atom("WM_DELETE_WINDOW");
    event.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(m_connection, 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&event));
    xcb_flush(m_connection);
}

void X11Windows::cover()
{
    const xcb_window_t window = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, m_root, 0, 0, 1280, 800, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(m_connection, window);
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}
