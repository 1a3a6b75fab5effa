// SPDX-License-Identifier: MIT
#include "VirtualKeyCodes.h"

#include <algorithm>
#include <array>

namespace
{

struct KeyCodes {
    int virtualKey;
    int evdev;
};

// Key names are those of the US layout. The Fn key, 63, has no row: its evdev
// code lies beyond what an X server can tell.
constexpr auto keyTable = std::to_array<KeyCodes>({
    { 0, 30 }, // A
    { 1, 31 }, // S
    { 2, 32 }, // D
    { 3, 33 }, // F
    { 4, 35 }, // H
    { 5, 34 }, // G
    { 6, 44 }, // Z
    { 7, 45 }, // X
    { 8, 46 }, // C
    { 9, 47 }, // V
    { 10, 86 }, // ISO section: left of Z
    { 11, 48 }, // B
    { 12, 16 }, // Q
    { 13, 17 }, // W
    { 14, 18 }, // E
    { 15, 19 }, // R
    { 16, 21 }, // Y
    { 17, 20 }, // T
    { 18, 2 }, // 1
    { 19, 3 }, // 2
    { 20, 4 }, // 3
    { 21, 5 }, // 4
    { 22, 7 }, // 6
    { 23, 6 }, // 5
    { 24, 13 }, // Equal
    { 25, 10 }, // 9
    { 26, 8 }, // 7
    { 27, 12 }, // Minus
    { 28, 9 }, // 8
    { 29, 11 }, // 0
    { 30, 27 }, // RightBracket
    { 31, 24 }, // O
    { 32, 22 }, // U
    { 33, 26 }, // LeftBracket
    { 34, 23 }, // I
    { 35, 25 }, // P
    { 36, 28 }, // Return
    { 37, 38 }, // L
    { 38, 36 }, // J
    { 39, 40 }, // Quote
    { 40, 37 }, // K
    { 41, 39 }, // Semicolon
    { 42, 43 }, // Backslash
    { 43, 51 }, // Comma
    { 44, 53 }, // Slash
    { 45, 49 }, // N
    { 46, 50 }, // M
    { 47, 52 }, // Period
    { 48, 15 }, // Tab
    { 49, 57 }, // Space
    { 50, 41 }, // Grave
    { 51, 14 }, // Delete (BackSpace)
    { 53, 1 }, // Escape
    { 54, 126 }, // Right Command
    { 55, 125 }, // Command
    { 56, 42 }, // Shift
    { 57, 58 }, // Caps Lock
    { 58, 56 }, // Option
    { 59, 29 }, // Control
    { 60, 54 }, // Right Shift
    { 61, 100 }, // Right Option
    { 62, 97 }, // Right Control
    { 64, 187 }, // F17
    { 65, 83 }, // Pad .
    { 67, 55 }, // Pad *
    { 69, 78 }, // Pad +
    { 71, 69 }, // Pad Clear
    { 72, 115 }, // Volume Up
    { 73, 114 }, // Volume Down
    { 74, 113 }, // Mute
    { 75, 98 }, // Pad /
    { 76, 96 }, // Pad Enter
    { 78, 74 }, // Pad -
    { 79, 188 }, // F18
    { 80, 189 }, // F19
    { 81, 117 }, // Pad =
    { 82, 82 }, // Pad 0
    { 83, 79 }, // Pad 1
    { 84, 80 }, // Pad 2
    { 85, 81 }, // Pad 3
    { 86, 75 }, // Pad 4
    { 87, 76 }, // Pad 5
    { 88, 77 }, // Pad 6
    { 89, 71 }, // Pad 7
    { 90, 190 }, // F20
    { 91, 72 }, // Pad 8
    { 92, 73 }, // Pad 9
    { 93, 124 }, // JIS Yen
    { 94, 89 }, // JIS Underscore
    { 95, 95 }, // JIS Pad ,
    { 96, 63 }, // F5
    { 97, 64 }, // F6
    { 98, 65 }, // F7
    { 99, 61 }, // F3
    { 100, 66 }, // F8
    { 101, 67 }, // F9
    { 102, 123 }, // JIS Eisu
    { 103, 87 }, // F11
    { 104, 122 }, // JIS Kana
    { 105, 183 }, // F13
    { 106, 186 }, // F16
    { 107, 184 }, // F14
    { 109, 68 }, // F10
    { 110, 127 }, // Menu
    { 111, 88 }, // F12
    { 113, 185 }, // F15
    { 114, 110 }, // Help; Insert at that place of a PC keyboard
    { 115, 102 }, // Home
    { 116, 104 }, // Page Up
    { 117, 111 }, // Forward Delete
    { 118, 62 }, // F4
    { 119, 107 }, // End
    { 120, 60 }, // F2
    { 121, 109 }, // Page Down
    { 122, 59 }, // F1
    { 123, 105 }, // Left
    { 124, 106 }, // Right
    { 125, 108 }, // Down
    { 126, 103 }, // Up
});

constexpr int x11Offset = 8; // X11 numbers the same keys from 8 on

template <typename Value> bool isOneOf(std::initializer_list<Value> values, Value value)
{
    return std::ranges::find(values, value) != values.end();
}

} // namespace

std::optional<int> evdevCodeForVirtualKey(qint64 virtualKey)
{
    const auto *const row = std::ranges::find(keyTable, virtualKey, &KeyCodes::virtualKey);
    return row == keyTable.end() ? std::nullopt : std::optional(row->evdev);
}

std::optional<int> virtualKeyForEvdevCode(qint64 evdev)
{
    const auto *const row = std::ranges::find(keyTable, evdev, &KeyCodes::evdev);
    return row == keyTable.end() ? std::nullopt : std::optional(row->virtualKey);
}

std::optional<int> x11KeycodeForVirtualKey(qint64 virtualKey)
{
    const std::optional<int> evdev = evdevCodeForVirtualKey(virtualKey);
    return evdev ? std::optional(*evdev + x11Offset) : std::nullopt;
}

std::optional<int> virtualKeyForX11Keycode(qint64 keycode)
{
    return virtualKeyForEvdevCode(keycode - x11Offset);
}

std::vector<int> allVirtualKeys()
{
    std::vector<int> keys;
    keys.reserve(keyTable.size());
    std::ranges::transform(keyTable, std::back_inserter(keys), &KeyCodes::virtualKey);
    return keys;
}

bool isModifierVirtualKey(qint64 virtualKey)
{
    constexpr int rightCommand = 54;
    constexpr int function = 63;
    return virtualKey >= rightCommand && virtualKey <= function;
}

bool isKeypadVirtualKey(qint64 virtualKey)
{
    return isOneOf<qint64>({ 65, 67, 69, 71, 75, 76, 78, 81, 82, 83, 84, 85, 86, 87, 88, 89, 91, 92, 95 }, virtualKey);
}
