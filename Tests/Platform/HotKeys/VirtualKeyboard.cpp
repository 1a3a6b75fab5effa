// SPDX-License-Identifier: MIT
#include "VirtualKeyboard.h"

#include <ModifierFlags.h>
#include <VirtualKeyCodes.h>
#include <X11/Xcb.h>

#include <xcb/xtest.h>

namespace
{

constexpr int evdevOffset = 8;

} // namespace

VirtualKeyboard::VirtualKeyboard(const QByteArray &display)
    : m_connection(xcb_connect(display.constData(), nullptr))
{
    xcb_connection_t *x = m_connection.get();
    XcbMemory<xcb_xkb_use_extension_reply_t>(
        xcb_xkb_use_extension_reply(x, xcb_xkb_use_extension(x, 1, 0), nullptr)); // must be read once
}

bool VirtualKeyboard::isWorking() const
{
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(m_connection.get(), &xcb_test_id);
    return !xcb_connection_has_error(m_connection.get()) && extension && extension->present;
}

void VirtualKeyboard::pressCombination(int virtualKey, quint32 modifiers)
{
    for (const int key : modifierKeys(modifiers))
        press(key);
    press(virtualKey);
}

void VirtualKeyboard::releaseCombination(int virtualKey, quint32 modifiers)
{
    release(virtualKey);
    for (const int key : modifierKeys(modifiers))
        release(key);
}

void VirtualKeyboard::typeCombination(int virtualKey, quint32 modifiers)
{
    pressCombination(virtualKey, modifiers);
    releaseCombination(virtualKey, modifiers);
}

void VirtualKeyboard::pressAtOnce(int virtualKey)
{
    sendKeycode(x11KeycodeForVirtualKey(virtualKey).value(), Direction::Down);
}

quint16 VirtualKeyboard::lockedModifiers() const
{
    xcb_connection_t *x = m_connection.get();
    const XcbMemory<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(x, xcb_xkb_get_state(x, XCB_XKB_ID_USE_CORE_KBD), nullptr));
    return state ? state->lockedMods : 0;
}

void VirtualKeyboard::lockGroup(quint8 group)
{
    xcb_connection_t *x = m_connection.get();
    XcbMemory<xcb_generic_error_t>(
        xcb_request_check(x, xcb_xkb_latch_lock_state_checked(x, XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0)));
}

std::vector<int> VirtualKeyboard::modifierKeys(quint32 modifiers)
{
    std::vector<int> keys;
    if (modifiers & CarbonModifier::command)
        keys.push_back(55);
    if (modifiers & CarbonModifier::shift)
        keys.push_back(56);
    if (modifiers & CarbonModifier::option)
        keys.push_back(58);
    if (modifiers & CarbonModifier::control)
        keys.push_back(59);
    return keys;
}

void VirtualKeyboard::send(int virtualKey, Direction direction)
{
    sendKeycode(x11KeycodeForVirtualKey(virtualKey).value(), direction);
    waitForServer();
}

void VirtualKeyboard::waitForServer()
{
    xcb_connection_t *x = m_connection.get();
    XcbMemory<xcb_get_input_focus_reply_t>(xcb_get_input_focus_reply(x, xcb_get_input_focus(x), nullptr));
}

void VirtualKeyboard::sendKeycode(int keycode, Direction direction)
{
    const quint8 type = direction == Direction::Down ? XCB_KEY_PRESS : XCB_KEY_RELEASE;
    xcb_test_fake_input(m_connection.get(), type, static_cast<quint8>(keycode), XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_flush(m_connection.get());
}

void VirtualKeyboard::setLock(const Lock &lock, bool isOn)
{
    if (bool(lockedModifiers() & lock.stateBit) == isOn)
        return;
    sendKeycode(lock.evdevKey + evdevOffset, Direction::Down);
    sendKeycode(lock.evdevKey + evdevOffset, Direction::Up);
    waitForServer();
}
