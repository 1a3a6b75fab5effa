// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>

// Modifier keys of a combination, in two encodings: the Carbon one is stored
// and registered, the Cocoa one is what a recorder field speaks.
//
// On this desktop Command is the Super key, Option is Alt.

struct Modifier {
    quint64 carbon;
    quint64 cocoa;
    char16_t glyph;
    const char *word; // on a PC keyboard; a key for localizedString()
};

namespace CarbonModifier
{

constexpr quint64 command = 0x0100;
constexpr quint64 shift = 0x0200;
constexpr quint64 option = 0x0800;
constexpr quint64 control = 0x1000;
constexpr quint64 all = command | shift | option | control;

} // namespace CarbonModifier

namespace CocoaModifier
{

constexpr quint64 shift = 0x020000;
constexpr quint64 control = 0x040000;
constexpr quint64 option = 0x080000;
constexpr quint64 command = 0x100000;
constexpr quint64 all = command | shift | option | control;

} // namespace CocoaModifier

// Command, Option, Control, Shift. Whatever is shown keeps this order, which is
// not the one of menus.
extern const std::array<Modifier, 4> modifiersInOrder;

// Bits that stand for no modifier of the table are dropped.
quint64 SRCarbonToCocoaFlags(quint64 carbonFlags);
quint64 SRCocoaToCarbonFlags(quint64 cocoaFlags);

// "⌥⌃" for Option and Control; empty when none is set.
QString modifierGlyphs(quint64 carbonFlags);
// "Alt+Ctrl" for the same, as a PC keyboard prints them.
QString modifierWords(quint64 carbonFlags);
