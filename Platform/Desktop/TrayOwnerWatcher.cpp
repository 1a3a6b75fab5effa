// SPDX-License-Identifier: MIT
#include "TrayOwnerWatcher.h"

#include <cstdlib>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

namespace
{

constexpr int sentByClient = 0x80; // a bit of the type of an event

struct Free {
    void operator()(void *reply) const { std::free(reply); } // NOLINT: xcb hands out malloc'ed replies
};
template <typename Reply> using XcbReply = std::unique_ptr<Reply, Free>;

} // namespace

void TrayOwnerWatcher::Disconnect::operator()(xcb_connection_t *connection) const
{
    xcb_disconnect(connection);
}

TrayOwnerWatcher::TrayOwnerWatcher(const QByteArray &display, QObject *parent)
    : QObject(parent)
{
    int screen = 0;
    m_connection.reset(xcb_connect(display.constData(), &screen));
    xcb_connection_t *const x = m_connection.get();
    if (xcb_connection_has_error(x)) {
        m_connection.reset();
        return;
    }
    const QByteArray name = "_NET_SYSTEM_TRAY_S" + QByteArray::number(screen);
    const auto atomCookie = xcb_intern_atom(x, 0, static_cast<quint16>(name.size()), name.constData());
    const xcb_query_extension_reply_t *const extension = xcb_get_extension_data(x, &xcb_xfixes_id);
    const XcbReply<xcb_intern_atom_reply_t> selection(xcb_intern_atom_reply(x, atomCookie, nullptr));
    if (!selection || !extension || !extension->present) {
        m_connection.reset();
        return;
    }
    m_selection = selection->atom;
    m_firstEvent = extension->first_event;
    // The server speaks the extension with those alone who have said which version they know.
    const auto version = xcb_xfixes_query_version(x, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION);
    const XcbReply<xcb_xfixes_query_version_reply_t> known(xcb_xfixes_query_version_reply(x, version, nullptr));
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    xcb_xfixes_select_selection_input(x, root, m_selection,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
            | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    askForOwner();

    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(x), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &TrayOwnerWatcher::takeEvents);
    // What came with the answers above makes the socket ready no more.
    QMetaObject::invokeMethod(this, &TrayOwnerWatcher::takeEvents, Qt::QueuedConnection);
}

TrayOwnerWatcher::~TrayOwnerWatcher() = default;

void TrayOwnerWatcher::takeEvents()
{
    if (!m_connection)
        return;
    bool isInDoubt = false;
    while (const auto event = XcbReply<xcb_generic_event_t>(xcb_poll_for_event(m_connection.get())))
        isInDoubt = isInDoubt || (event->response_type & ~sentByClient) == m_firstEvent + XCB_XFIXES_SELECTION_NOTIFY;
    const bool isLost = xcb_connection_has_error(m_connection.get()) != 0;
    if (isLost)
        m_notifier.reset();
    const bool hadOwner = m_hasOwner;
    if (isLost)
        m_hasOwner = false;
    else if (isInDoubt)
        askForOwner();
    if (m_hasOwner != hadOwner)
        Q_EMIT hasOwnerDidChange();
}

void TrayOwnerWatcher::askForOwner()
{
    const auto cookie = xcb_get_selection_owner(m_connection.get(), m_selection);
    const XcbReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(m_connection.get(), cookie, nullptr));
    m_hasOwner = owner && owner->owner != XCB_WINDOW_NONE;
}
