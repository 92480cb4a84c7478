#pragma once

#include <QByteArray>
#include <QList>

#include <xcb/xcb.h>

// The top-level windows of the X display in DISPLAY, as a window manager
// would see them, and the two things a test does to them.
class X11Windows
{
public:
    X11Windows();
    ~X11Windows();
    X11Windows(const X11Windows &) = delete;
    X11Windows &operator=(const X11Windows &) = delete;

    bool connected() const { return m_connection && !xcb_connection_has_error(m_connection); }
    // Shown top-level windows with this title, from the bottom of the stack to the top.
    QList<xcb_window_t> shown(const QByteArray &title) const;
    // The shown top-level window on top of all others, or none.
    xcb_window_t topmost() const;
    xcb_window_t focused() const;
    // Asks the window to close, as the close button of a title bar does.
    void close(xcb_window_t window) const;
    // Shows a window of the test's own above everything.
    void cover();

private:
    QList<xcb_window_t> stack() const;
    QByteArray title(xcb_window_t window) const;
    xcb_atom_t atom(const QByteArray &name) const;

    xcb_connection_t *m_connection;
    xcb_window_t m_root = 0;
};
