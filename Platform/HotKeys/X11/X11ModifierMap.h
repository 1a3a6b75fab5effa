// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>

#include <array>
#include <optional>
#include <vector>

struct xcb_connection_t;

// What an X server tells of its keyboard, as far as modifiers go.
struct X11KeyTables {
    static constexpr int modifierCount = 8; // Shift, Lock, Control, Mod1 to Mod5, in the order of their bits

    std::array<QList<quint8>, modifierCount> keycodesOfModifier;
    QHash<quint8, QList<quint32>> keysyms; // by keycode; only those of modifier keys are looked at

    // Empty when the connection is lost.
    static X11KeyTables read(xcb_connection_t *connection);
};

// Which bits of the keyboard's state stand for the modifiers of a hot key, and
// which are locks that must not matter. Only Shift, Lock and Control have bits of
// their own; where Alt, Super and Num Lock are is the keyboard configuration's choice.
class X11ModifierMap final
{
public:
    X11ModifierMap() = default;
    explicit X11ModifierMap(const X11KeyTables &tables);

    // The state bits of a Carbon mask, whose unknown bits do not count. Nothing
    // when the keyboard lacks one of the modifiers, or when none is left.
    std::optional<quint16> stateBits(quint32 carbonModifiers) const;
    // Those bits of a key event's state that may tell hot keys apart.
    quint16 withoutLocks(quint16 state) const;
    // Every combination of lock keys that may be on, none of them first. A lock
    // that shares its bit with one of the given modifiers is left out.
    std::vector<quint16> lockStates(quint16 stateBits) const;

    bool operator==(const X11ModifierMap &other) const = default;

private:
    quint16 m_option = 0;
    quint16 m_command = 0;
    quint16 m_locks = 0;
};
