// SPDX-License-Identifier: MIT
#include "X11Messages.h"

#include <QGuiApplication>
#include <QWidget>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include <xcb/xcb.h>

namespace
{

constexpr quint32 sourceIsApplication = 1;
constexpr quint32 mostStates = 64;
constexpr std::size_t startupChunk = 20; // bytes in one message

struct Free {
    void operator()(void *reply) const { std::free(reply); } // NOLINT: xcb hands out malloc'ed replies
};
template <typename Reply> using XcbReply = std::unique_ptr<Reply, Free>;

// Null without an X server; asking it then would crash.
xcb_connection_t *connection()
{
    const auto *x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_window_t root(xcb_connection_t *x)
{
    return xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
}

xcb_atom_t atom(xcb_connection_t *x, const char *name)
{
    const auto cookie = xcb_intern_atom(x, 0, static_cast<quint16>(std::strlen(name)), name);
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(x, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t { XCB_ATOM_NONE };
}

void sendToRoot(xcb_connection_t *x, const xcb_client_message_event_t &message, quint32 mask)
{
    xcb_send_event(x, 0, root(x), mask, reinterpret_cast<const char *>(&message)); // NOLINT: the protocol's own way
}

std::vector<xcb_atom_t> states(xcb_connection_t *x, xcb_window_t window, xcb_atom_t property)
{
    const auto cookie = xcb_get_property(x, 0, window, property, XCB_ATOM_ATOM, 0, mostStates);
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(x, cookie, nullptr));
    if (!reply || reply->format != 32) // NOLINT(readability-magic-numbers): bits of an atom
        return {};
    const auto *first = static_cast<const xcb_atom_t *>(xcb_get_property_value(reply.get()));
    return { first, first + reply->value_len }; // NOLINT(cppcoreguidelines-pro-bounds-pointer-arithmetic)
}

} // namespace

bool X11Messages::isAvailable()
{
    return connection() != nullptr;
}

void X11Messages::send(const QWidget &window, const char *type, const std::array<quint32, 5> &data)
{
    xcb_connection_t *x = connection();
    if (!x || !window.isWindow())
        return;
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window.winId());
    message.type = atom(x, type);
    std::ranges::copy(data, message.data.data32);
    sendToRoot(x, message, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    xcb_flush(x);
}

void X11Messages::removeProperty(const QWidget &window, const char *property)
{
    xcb_connection_t *x = connection();
    if (!x || !window.isWindow())
        return;
    xcb_delete_property(x, static_cast<xcb_window_t>(window.winId()), atom(x, property));
    xcb_flush(x);
}

void X11Messages::changeStates(const QWidget &window, States change, const QList<QByteArray> &names)
{
    xcb_connection_t *x = connection();
    if (!x || !window.isWindow())
        return;
    const auto windowId = static_cast<xcb_window_t>(window.winId());
    const xcb_atom_t property = atom(x, "_NET_WM_STATE");
    std::vector<xcb_atom_t> present = states(x, windowId, property);
    for (const QByteArray &name : names) {
        const xcb_atom_t state = atom(x, name.constData());
        std::erase(present, state);
        if (change == States::Add)
            present.push_back(state);
        send(window, "_NET_WM_STATE", { change == States::Add ? 1U : 0U, state, 0, sourceIsApplication, 0 });
    }
    // The window manager writes the property of a window that it shows; before that it reads ours.
    if (!window.isVisible() || !window.testAttribute(Qt::WA_Mapped))
        xcb_change_property(x, XCB_PROP_MODE_REPLACE, windowId, property, XCB_ATOM_ATOM, 32,
            static_cast<quint32>(present.size()), present.data());
    xcb_flush(x);
}

void X11Messages::finishStartup(const QByteArray &startupId)
{
    xcb_connection_t *x = connection();
    if (!x || startupId.isEmpty())
        return;
    QByteArray quoted = startupId;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    const QByteArray text = "remove: ID=\"" + quoted + '"';

    // Messages of one sequence carry the same window, which need not do anything else.
    const xcb_window_t sender = xcb_generate_id(x);
    xcb_create_window(x, XCB_COPY_FROM_PARENT, sender, root(x), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8; // NOLINT(readability-magic-numbers): bits of a character
    message.window = sender;
    message.type = atom(x, "_NET_STARTUP_INFO_BEGIN");
    // With the zero at its end.
    for (std::size_t sent = 0; sent <= static_cast<std::size_t>(text.size()); sent += startupChunk) {
        std::ranges::fill(message.data.data8, 0);
        const std::size_t rest = std::min(startupChunk, static_cast<std::size_t>(text.size()) - sent);
        std::memcpy(message.data.data8, text.constData() + sent, rest);
        sendToRoot(x, message, XCB_EVENT_MASK_PROPERTY_CHANGE);
        message.type = atom(x, "_NET_STARTUP_INFO");
    }
    xcb_destroy_window(x, sender);
    xcb_flush(x);
}
