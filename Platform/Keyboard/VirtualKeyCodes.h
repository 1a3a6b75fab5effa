// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <optional>
#include <vector>

// Virtual key codes: numbers of physical keys that mean the same on every
// machine. Settings keep them. The kernel numbers the same keys by evdev codes,
// and the X11 keycode is the evdev code plus 8. Numbers outside the table have
// no key, in either direction.

namespace VirtualKey
{

constexpr int none = -1;
constexpr int tab = 48;
constexpr int space = 49;
constexpr int backspace = 51;
constexpr int escape = 53;
constexpr int forwardDelete = 117;

} // namespace VirtualKey

std::optional<int> evdevCodeForVirtualKey(qint64 virtualKey);
std::optional<int> virtualKeyForEvdevCode(qint64 evdev);

std::optional<int> x11KeycodeForVirtualKey(qint64 virtualKey);
std::optional<int> virtualKeyForX11Keycode(qint64 keycode);

// Every key of the table, in rising order.
std::vector<int> allVirtualKeys();

// Command, Shift, Caps Lock, Option, Control and their right-hand twins.
bool isModifierVirtualKey(qint64 virtualKey);
bool isKeypadVirtualKey(qint64 virtualKey);
