// SPDX-License-Identifier: MIT
#include "BareGrabClient.h"

#include <VirtualKeyCodes.h>
#include <X11/Xcb.h>

BareGrabClient::BareGrabClient(const QByteArray &display)
    : m_connection(xcb_connect(display.constData(), nullptr))
    , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root)
{
}

bool BareGrabClient::grab(int virtualKey, quint16 stateBits)
{
    xcb_connection_t *x = m_connection.get();
    const auto keycode = static_cast<quint8>(x11KeycodeForVirtualKey(virtualKey).value());
    const XcbMemory<xcb_generic_error_t> refusal(xcb_request_check(
        x, xcb_grab_key_checked(x, 0, m_root, stateBits, keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
    return !refusal;
}

void BareGrabClient::ungrab(int virtualKey, quint16 stateBits)
{
    xcb_connection_t *x = m_connection.get();
    const auto keycode = static_cast<quint8>(x11KeycodeForVirtualKey(virtualKey).value());
    XcbMemory<xcb_generic_error_t>(
        xcb_request_check(x, xcb_ungrab_key_checked(x, keycode, m_root, stateBits))); // done when this returns
}

void BareGrabClient::waitForPress()
{
    waitFor(XCB_KEY_PRESS);
}

void BareGrabClient::waitForRelease()
{
    waitFor(XCB_KEY_RELEASE);
}

int BareGrabClient::takePresses()
{
    int presses = 0;
    while (const XcbMemory<xcb_generic_event_t> event { xcb_poll_for_event(m_connection.get()) })
        presses += (event->response_type & 0x7F) == XCB_KEY_PRESS ? 1 : 0;
    return presses;
}

void BareGrabClient::waitFor(int eventType)
{
    while (const XcbMemory<xcb_generic_event_t> event { xcb_wait_for_event(m_connection.get()) }) {
        if ((event->response_type & 0x7F) == eventType)
            return;
    }
}
