// SPDX-License-Identifier: MIT
#include "StickyWindow.h"

#include <QGuiApplication>
#include <QWidget>

#include <cstdlib>
#include <cstring>

#include <xcb/xcb.h>

namespace
{

constexpr quint32 allDesktops = 0xFFFFFFFF;
constexpr quint32 sourceIsApplication = 1;

xcb_atom_t atom(xcb_connection_t *connection, const char *name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<quint16>(std::strlen(name)), name);
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    const xcb_atom_t result = reply ? reply->atom : xcb_atom_t { XCB_ATOM_NONE };
    std::free(reply); // NOLINT(cppcoreguidelines-no-malloc): xcb hands out malloc'ed replies
    return result;
}

} // namespace

void showOnAllDesktops(const QWidget &window)
{
    // Without X11 there is no such interface, and asking the X server would crash.
    const auto *x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection() || !window.isWindow())
        return;

    xcb_connection_t *connection = x11->connection();
    const auto windowId = static_cast<xcb_window_t>(window.winId());
    const xcb_atom_t desktop = atom(connection, "_NET_WM_DESKTOP");

    // The property serves a window that is not mapped yet, the message one that is.
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, windowId, desktop, XCB_ATOM_CARDINAL, 32, 1, &allDesktops);
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = windowId;
    message.type = desktop;
    message.data.data32[0] = allDesktops;
    message.data.data32[1] = sourceIsApplication;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_send_event(connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        reinterpret_cast<const char *>(&message)); // NOLINT: the protocol's own way
    xcb_flush(connection);
}
