// SPDX-License-Identifier: MIT
#include "X11KeyboardLayouts.h"

#include "XkbKeyboardLayout.h"

#include <QSocketNotifier>

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-x11.h>

// This header uses the word as a name.
#define explicit xkb_explicit
#include <xcb/xkb.h>
#undef explicit

#include <cstdlib>

namespace
{

struct FreeMemory {
    void operator()(void *memory) const { std::free(memory); }
};
template <typename Value> using XcbMemory = std::unique_ptr<Value, FreeMemory>;

struct StateRelease {
    void operator()(xkb_state *state) const { xkb_state_unref(state); }
};

} // namespace

void XcbDisconnect::operator()(xcb_connection_t *connection) const
{
    xcb_disconnect(connection);
}

std::unique_ptr<X11KeyboardLayouts> X11KeyboardLayouts::create(const QByteArray &display)
{
    XcbConnectionPtr connection(xcb_connect(display.isEmpty() ? nullptr : display.constData(), nullptr));
    if (xcb_connection_has_error(connection.get()))
        return nullptr;

    quint8 firstEvent = 0;
    if (!xkb_x11_setup_xkb_extension(connection.get(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent, nullptr))
        return nullptr;
    const int device = xkb_x11_get_core_keyboard_device_id(connection.get());
    if (device < 0)
        return nullptr;

    std::unique_ptr<X11KeyboardLayouts> layouts(new X11KeyboardLayouts(std::move(connection), device, firstEvent));
    return layouts->m_layout ? std::move(layouts) : nullptr;
}

X11KeyboardLayouts::X11KeyboardLayouts(XcbConnectionPtr connection, int device, int firstEvent)
    : m_connection(std::move(connection))
    , m_device(device)
    , m_firstEvent(firstEvent)
    , m_notifier(std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read))
{
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11KeyboardLayouts::takeEvents);
    // First the wish to be told, then the reading: a change in between is told.
    selectEvents();
    readLayout();
}

X11KeyboardLayouts::~X11KeyboardLayouts() = default;

KeyboardLayoutPtr X11KeyboardLayouts::currentLayout()
{
    askAndTakeEvents();
    return m_layout;
}

quint32 X11KeyboardLayouts::keyboardType()
{
    askAndTakeEvents();
    return m_layout->keyboardType();
}

// Typing changes the state too; only its group matters here.
void X11KeyboardLayouts::selectEvents()
{
    constexpr quint16 events
        = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr quint16 mapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events_details_t details {};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    xcb_xkb_select_events_aux(
        m_connection.get(), static_cast<quint16>(m_device), events, 0, 0, mapParts, mapParts, &details);
}

// The server answers after whatever happened before, so a switch that another
// program has just made is known here without a turn of the event loop.
void X11KeyboardLayouts::askAndTakeEvents()
{
    const auto question = xcb_get_input_focus(m_connection.get());
    const XcbMemory<xcb_get_input_focus_reply_t> answer(
        xcb_get_input_focus_reply(m_connection.get(), question, nullptr));
    takeEvents();
}

void X11KeyboardLayouts::takeEvents()
{
    constexpr int sentByClient = 0x80;
    bool isLayoutInDoubt = false;
    while (const XcbMemory<xcb_generic_event_t> event { xcb_poll_for_event(m_connection.get()) })
        isLayoutInDoubt = isLayoutInDoubt || (event->response_type & ~sentByClient) == m_firstEvent;

    if (xcb_connection_has_error(m_connection.get())) {
        // A dead connection stays readable for ever.
        m_notifier->setEnabled(false);
        return;
    }
    if (isLayoutInDoubt)
        readLayout();
}

// One choice of a layout arrives as several events, and a second keyboard's
// first key as one more. What prints the same is the same layout.
void X11KeyboardLayouts::readLayout()
{
    const XkbContextPtr context = makeXkbContext();
    XkbKeymapPtr keymap(
        xkb_x11_keymap_new_from_device(context.get(), m_connection.get(), m_device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap)
        return;
    const std::unique_ptr<xkb_state, StateRelease> state(
        xkb_x11_state_new_from_device(keymap.get(), m_connection.get(), m_device));
    if (!state)
        return;

    const quint32 group = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_EFFECTIVE);
    auto layout = std::make_shared<const XkbKeyboardLayout>(std::move(keymap), group);
    if (m_layout && m_layout->printsLike(*layout))
        return;

    const bool isFirst = !m_layout;
    m_layout = std::move(layout);
    if (isFirst || m_isAnnouncementDue)
        return;
    // Later, because a question may have led here, whose caller expects no calls.
    m_isAnnouncementDue = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isAnnouncementDue = false;
            Q_EMIT layoutDidChange();
        },
        Qt::QueuedConnection);
}
